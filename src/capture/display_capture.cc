#include "capture/display_capture.h"

#include "capture/target_size.h"
#include "capture/truncation.h"
#include "displays/display_records.h"
#include "platform/displays.h"

namespace deskhand {
namespace {

// A display whose screen is not known is most likely a built-in one, which has two pixels a point.
constexpr double kScaleOfUnknownScreen = 2.0;

CapturePlan PlanDisplay(const platform::ShareableDisplay& display) {
  CapturePlan plan;
  plan.display.id = display.id;
  double scale = kScaleOfUnknownScreen;
  const auto screens = platform::Screens();
  if (const platform::Screen* screen = FindScreen(screens, display.id)) {
    const Rect& frame = screen->frame;
    plan.display.width = TruncateToInt32(frame.width);
    plan.display.height = TruncateToInt32(frame.height);
    plan.display.origin_x = TruncateToInt32(frame.x);
    plan.display.origin_y = TruncateToInt32(GlobalOriginY(frame, platform::PrimaryScreenHeight()));
    scale = screen->scale_factor;
  } else {
    plan.display.width = TruncateToInt32(static_cast<double>(display.width));
    plan.display.height = TruncateToInt32(static_cast<double>(display.height));
  }
  const PixelSize target = TargetSize(TruncateToInt32(scale * plan.display.width),
                                      TruncateToInt32(scale * plan.display.height));
  plan.configuration.width = target.width;
  plan.configuration.height = target.height;
  return plan;
}

}  // namespace

Outcome<Screenshot> ScreenshotOfDisplay(const CaptureRequest& request) {
  return Capture(request, PlanDisplay,
                 {"Screenshot capture failed", "Failed to encode screenshot to JPEG",
                  "Screenshot capture timed out after 10 seconds"});
}

}  // namespace deskhand
