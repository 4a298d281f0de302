// SCShareableContent, SCDisplay, SCRunningApplication. The scene's `content` has `displays`
// (objects with `id`, `width`, `height`), `applications` (objects with `bundleId`, null for nil),
// `result`
// ("content", "error", "both" or "neither"), `error` (its description), and what answers.h
// says of the answer.
// Documented at developer.apple.com/documentation/screencapturekit/scshareablecontent: the handler
// gets the content or an error, on a queue that is not specified.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "core/answers.h"
#include "core/owned_block.h"
#include "core/recorder.h"
#include "core/tracked_object.h"
#include "sc_errors.h"

using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::Value;

@interface DoubleDisplay : TrackedObject {
  CGDirectDisplayID _displayID;
  NSInteger _width;
  NSInteger _height;
}
@end

@implementation DoubleDisplay

- (id)initWithScript:(const Value&)script {
  self =
      [super initWithLabel:"display " +
                           std::to_string(static_cast<CGDirectDisplayID>(script["id"].Number()))];
  _displayID = static_cast<CGDirectDisplayID>(script["id"].Number());
  _width = static_cast<NSInteger>(script["width"].Number());
  _height = static_cast<NSInteger>(script["height"].Number());
  return self;
}

- (CGDirectDisplayID)displayID {
  Record("-[SCDisplay displayID]", {[self label]});
  return _displayID;
}

- (NSInteger)width {
  Record("-[SCDisplay width]", {[self label]});
  return _width;
}

- (NSInteger)height {
  Record("-[SCDisplay height]", {[self label]});
  return _height;
}

@end

@interface DoubleApplication : TrackedObject {
  NSString* _bundleIdentifier;
}
@end

@implementation DoubleApplication

- (id)initWithScript:(const Value&)script {
  const Value bundle_id = script["bundleId"];
  self = [super initWithLabel:"application " + bundle_id.Text("without identifier")];
  if (!bundle_id.IsNull()) {
    _bundleIdentifier = [[NSString alloc] initWithUTF8String:bundle_id.Text().c_str()];
  }
  return self;
}

- (void)dispose {
  [_bundleIdentifier release];
}

- (NSString*)bundleIdentifier {
  if (RecordFailable("-[SCRunningApplication bundleIdentifier]", {[self label]})) return nil;
  return [[_bundleIdentifier retain] autorelease];
}

@end

@interface DoubleContent : TrackedObject {
  NSMutableArray* _displays;
  NSMutableArray* _applications;
}
@end

namespace {

template <class Double>
NSMutableArray* NewDoubles(const Value& scripts) {
  NSMutableArray* doubles = [[NSMutableArray alloc] init];
  for (const Value& script : scripts.Items()) {
    id made = [[Double alloc] initWithScript:script];
    [doubles addObject:made];
    [made release];
  }
  return doubles;
}

}  // namespace

@implementation DoubleContent

- (id)initWithScript:(const Value&)script {
  self = [super initWithLabel:"shareable content"];
  _displays = NewDoubles<DoubleDisplay>(script["displays"]);
  _applications = NewDoubles<DoubleApplication>(script["applications"]);
  return self;
}

- (void)dispose {
  [_displays release];
  [_applications release];
}

- (NSArray*)displays {
  if (RecordFailable("-[SCShareableContent displays]")) return [NSArray array];
  return [[_displays retain] autorelease];
}

- (NSArray*)applications {
  if (RecordFailable("-[SCShareableContent applications]")) return [NSArray array];
  return [[_applications retain] autorelease];
}

@end

@implementation SCDisplay
@end

@implementation SCRunningApplication
@end

@implementation SCShareableContent

+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:
                                     (void (^)(SCShareableContent*, NSError*))handler {
  const bool fails = RecordFailable(
      "+[SCShareableContent getShareableContentExcludingDesktopWindows:onScreenWindowsOnly:"
      "completionHandler:]",
      {excludeDesktopWindows != NO, onScreenWindowsOnly != NO});
  const Value script = macdoubles::SceneOf("content");
  const std::string result = fails ? "error" : script["result"].Text();
  const auto owned = macdoubles::OwnBlock(handler);
  macdoubles::Answer("content", [owned, script, result] {
    const bool has_content = result == "content" || result == "both";
    const bool has_error = result == "error" || result == "both";
    id content = has_content ? [[DoubleContent alloc] initWithScript:script] : nil;
    NSError* error = has_error ? macdoubles::NewStreamError(script["error"].Text()) : nil;
    macdoubles::BlockOf<decltype(handler)>(owned)(content, error);
    [content release];
    [error release];
  });
}

@end
