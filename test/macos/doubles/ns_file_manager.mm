// NSFileManager. The scene's `files` are the paths where something is, as far as they lie in a
// folder of applications: other paths are the real file system's, which Foundation reads for
// itself. `displayNames` has the display names of paths, null for nil. Documented at
// developer.apple.com/documentation/foundation/nsfilemanager.
#import <Foundation/Foundation.h>

#include "core/methods.h"
#include "core/recorder.h"
#include "objects.h"

using macdoubles::RecordFailable;
using macdoubles::ToText;
using macdoubles::Value;

namespace {

BOOL (*own_file_exists)(id, SEL, NSString*);

bool IsInApplications(const std::string& path) {
  return path.rfind("/Applications/", 0) == 0 || path.rfind("/System/Applications/", 0) == 0;
}

BOOL FileExists(id self, SEL selector, NSString* path) {
  const std::string text = ToText(path);
  if (!IsInApplications(text)) return own_file_exists(self, selector, path);
  if (RecordFailable("-[NSFileManager fileExistsAtPath:]", {text})) return NO;
  for (const Value& file : macdoubles::SceneOf("files").Items()) {
    if (file.Text() == text) return YES;
  }
  return NO;
}

NSString* DisplayName(id, SEL, NSString* path) {
  const std::string text = ToText(path);
  if (RecordFailable("-[NSFileManager displayNameAtPath:]", {text})) return nil;
  return macdoubles::ToNSString(macdoubles::SceneOf("displayNames")[text]);
}

}  // namespace

@interface MacDoublesFileManager : NSObject
@end

@implementation MacDoublesFileManager

+ (void)load {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Class manager = [NSFileManager class];
  own_file_exists = macdoubles::ReplaceMethod(manager, @selector(fileExistsAtPath:), FileExists);
  macdoubles::ReplaceMethod(manager, @selector(displayNameAtPath:), DisplayName);
  [pool release];
}

@end
