// Quartz Display Services. The scene's `mainDisplayId` is the main display.
// Documented at developer.apple.com/documentation/coregraphics/1455620-cgmaindisplayid.
#import <CoreGraphics/CoreGraphics.h>

#include "core/recorder.h"

CGDirectDisplayID CGMainDisplayID() {
  constexpr CGDirectDisplayID kNoDisplay = 0;  // kCGNullDirectDisplay
  if (macdoubles::RecordFailable("CGMainDisplayID")) return kNoDisplay;
  return static_cast<CGDirectDisplayID>(macdoubles::SceneOf("mainDisplayId").Number());
}
