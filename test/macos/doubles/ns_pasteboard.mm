// NSPasteboard. The scene's `clipboard` is what the general pasteboard holds: an object with
// `text`, null or missing for no plain text, whatever else it may have. Clearing it makes the
// process its owner, and only then does it take a text. Documented at
// developer.apple.com/documentation/appkit/nspasteboard.
#import <AppKit/AppKit.h>

#include "core/recorder.h"
#include "objects.h"

NSPasteboardType const NSPasteboardTypeString = @"public.utf8-plain-text";

using macdoubles::RecordFailable;
using macdoubles::Value;

namespace {

Value LabelOfType(NSPasteboardType type) {
  if (type == NSPasteboardTypeString) return "NSPasteboardTypeString";
  return macdoubles::ToText(type);
}

}  // namespace

/// The one general pasteboard, which lives as long as the process.
@interface DoublePasteboard : NSObject
@end

@implementation DoublePasteboard

- (NSInteger)clearContents {
  macdoubles::Record("-[NSPasteboard clearContents]");
  macdoubles::ChangeInScene("clipboard", Value::Object{{"isOurs", true}});
  return 1;
}

- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type {
  const std::string text = macdoubles::ToText(string);
  const bool fails =
      RecordFailable("-[NSPasteboard setString:forType:]", {text, LabelOfType(type)});
  Value contents = macdoubles::SceneOf("clipboard");
  if (fails || !contents["isOurs"].IsTrue()) return NO;
  contents.Set("text", text);
  macdoubles::ChangeInScene("clipboard", contents);
  return YES;
}

- (NSString*)stringForType:(NSPasteboardType)type {
  if (RecordFailable("-[NSPasteboard stringForType:]", {LabelOfType(type)})) return nil;
  return macdoubles::ToNSString(macdoubles::SceneOf("clipboard")["text"]);
}

@end

@implementation NSPasteboard

+ (NSPasteboard*)generalPasteboard {
  static DoublePasteboard* const pasteboard = [[DoublePasteboard alloc] init];
  macdoubles::Record("+[NSPasteboard generalPasteboard]");
  return static_cast<id>(pasteboard);
}

@end
