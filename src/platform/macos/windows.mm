#include "platform/windows.h"

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#include "platform/macos/cf_owner.h"
#include "platform/macos/running_application.h"
#include "platform/macos/strings.h"

namespace deskhand::platform {

struct WindowList {
  CFOwner<CFArrayRef> windows;
};

namespace {

NSArray* ArrayOf(const WindowList& windows) { return (__bridge NSArray*)windows.windows.get(); }

/// What the list says of a window under a key; nil when that is not of the class that it should be.
template <class Class>
Class* ValueOf(const WindowList& windows, size_t index, CFStringRef key) {
  const id window = [ArrayOf(windows) objectAtIndex:index];
  if (![window isKindOfClass:[NSDictionary class]]) return nil;
  const id value = [window objectForKey:(__bridge NSString*)key];
  return [value isKindOfClass:[Class class]] ? value : nil;
}

std::optional<int32_t> IntegerOf(const WindowList& windows, size_t index, CFStringRef key) {
  NSNumber* number = ValueOf<NSNumber>(windows, index, key);
  if (!number) return std::nullopt;
  return number.intValue;
}

}  // namespace

WindowListRef OnScreenWindows() {
  constexpr CGWindowListOption kOptions =
      kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements;
  const CFArrayRef windows = CGWindowListCopyWindowInfo(kOptions, kCGNullWindowID);
  if (!windows) return nullptr;
  return std::shared_ptr<const WindowList>(new WindowList{CFOwner<CFArrayRef>(windows)});
}

size_t CountOf(const WindowList& windows) { return ArrayOf(windows).count; }

std::optional<int32_t> OwnerProcessId(const WindowList& windows, size_t index) {
  return IntegerOf(windows, index, kCGWindowOwnerPID);
}

std::optional<int32_t> LayerOf(const WindowList& windows, size_t index) {
  return IntegerOf(windows, index, kCGWindowLayer);
}

std::optional<float> AlphaOf(const WindowList& windows, size_t index) {
  NSNumber* alpha = ValueOf<NSNumber>(windows, index, kCGWindowAlpha);
  if (!alpha) return std::nullopt;
  return alpha.floatValue;
}

std::optional<std::string> OwnerName(const WindowList& windows, size_t index) {
  return ToString(ValueOf<NSString>(windows, index, kCGWindowOwnerName));
}

std::optional<Rect> BoundsOf(const WindowList& windows, size_t index) {
  NSDictionary* bounds = ValueOf<NSDictionary>(windows, index, kCGWindowBounds);
  if (!bounds) return std::nullopt;
  CGRect rect;
  if (!CGRectMakeWithDictionaryRepresentation((__bridge CFDictionaryRef)bounds, &rect)) {
    return std::nullopt;
  }
  return Rect{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

RunningApplicationRef OwnerOf(const WindowList& windows, size_t index) {
  const std::optional<int32_t> process = OwnerProcessId(windows, index);
  if (!process) return nullptr;
  return ToRef([NSRunningApplication runningApplicationWithProcessIdentifier:*process]);
}

}  // namespace deskhand::platform
