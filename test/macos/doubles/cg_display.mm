// Quartz Display Services. The scene's `mainDisplayId` is the main display; `displays` are objects
// with `id` and `bounds`, in points from the top-left corner of the main display.
// Documented at developer.apple.com/documentation/coregraphics/quartz_display_services: a point on
// a display's left or top edge is on it, one on its right or bottom edge is not.
#import <CoreGraphics/CoreGraphics.h>

#include "core/recorder.h"
#include "geometry.h"

CGDirectDisplayID CGMainDisplayID() {
  constexpr CGDirectDisplayID kNoDisplay = 0;  // kCGNullDirectDisplay
  if (macdoubles::RecordFailable("CGMainDisplayID")) return kNoDisplay;
  return static_cast<CGDirectDisplayID>(macdoubles::SceneOf("mainDisplayId").Number());
}

CGError CGGetDisplaysWithPoint(CGPoint point, uint32_t maxDisplays, CGDirectDisplayID* displays,
                               uint32_t* matchingDisplayCount) {
  if (macdoubles::RecordFailable("CGGetDisplaysWithPoint",
                                 {macdoubles::ToValue(point), maxDisplays})) {
    return kCGErrorFailure;
  }
  uint32_t count = 0;
  for (const macdoubles::Value& display : macdoubles::SceneOf("displays").Items()) {
    const CGRect bounds = macdoubles::ToRect(display["bounds"]);
    const bool is_in = point.x >= NSMinX(bounds) && point.x < NSMaxX(bounds) &&
                       point.y >= NSMinY(bounds) && point.y < NSMaxY(bounds);
    if (!is_in || count == maxDisplays) continue;
    displays[count++] = static_cast<CGDirectDisplayID>(display["id"].Number());
  }
  *matchingDisplayCount = count;
  return kCGErrorSuccess;
}
