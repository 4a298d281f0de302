// A screenshot of one whole display, within the size budget. Threads: see capture.h.
#pragma once

#include "capture/capture.h"

namespace deskhand {

Outcome<Screenshot> ScreenshotOfDisplay(const CaptureRequest& request);

}  // namespace deskhand
