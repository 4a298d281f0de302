#include "capture/region_capture.h"

namespace deskhand {

Outcome<Screenshot> ScreenshotOfRegion(const CaptureRequest& request, const Rect& region,
                                       PixelSize output) {
  const auto plan = [region, output](const platform::ShareableDisplay&) {
    CapturePlan planned;
    planned.configuration.source_rect = region;
    planned.configuration.width = output.width;
    planned.configuration.height = output.height;
    return planned;
  };
  return Capture(request, plan,
                 {"Region capture failed", "Failed to encode region screenshot to JPEG",
                  "Region capture timed out after 10 seconds"});
}

}  // namespace deskhand
