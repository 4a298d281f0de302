// A screenshot of a rectangle of one display, stretched to a size of the caller's choice.
// Threads: see capture.h.
#pragma once

#include "capture/capture.h"
#include "capture/target_size.h"
#include "platform/geometry.h"

namespace deskhand {

/// `region` in points of the captured display, origin at its top-left corner; neither it nor
/// `output` is checked, the platform decides what an odd one gives.
Outcome<Screenshot> ScreenshotOfRegion(const CaptureRequest& request, const Rect& region,
                                       PixelSize output);

}  // namespace deskhand
