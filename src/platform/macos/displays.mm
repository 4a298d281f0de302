#include "platform/displays.h"

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>

#include "platform/macos/strings.h"

namespace deskhand::platform {
namespace {

Rect ToRect(NSRect rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

Screen ToScreen(NSScreen* screen) {
  NSNumber* number = [screen.deviceDescription objectForKey:@"NSScreenNumber"];
  return {
      .id = number ? std::optional<uint32_t>(number.unsignedIntValue) : std::nullopt,
      .frame = ToRect(screen.frame),
      .scale_factor = screen.backingScaleFactor,
      .name = ToString(screen.localizedName),
  };
}

}  // namespace

std::vector<Screen> Screens() {
  std::vector<Screen> screens;
  for (NSScreen* screen in NSScreen.screens) screens.push_back(ToScreen(screen));
  return screens;
}

std::optional<Screen> MainScreen() {
  NSScreen* screen = NSScreen.mainScreen;
  if (!screen) return std::nullopt;
  return ToScreen(screen);
}

double PrimaryScreenHeight() {
  NSScreen* primary = NSScreen.screens.firstObject;
  return primary ? primary.frame.size.height : 0;
}

uint32_t MainDisplayId() { return CGMainDisplayID(); }

std::optional<uint32_t> DisplayAt(Point point) {
  constexpr uint32_t kOne = 1;
  CGDirectDisplayID display = 0;
  uint32_t count = 0;
  const CGError error =
      CGGetDisplaysWithPoint(CGPointMake(point.x, point.y), kOne, &display, &count);
  if (error != kCGErrorSuccess || count == 0) return std::nullopt;
  return display;
}

}  // namespace deskhand::platform
