// One screenshot from the request to base64 text: what display and region capture share.
// Units: points for display geometry, pixels for pictures. Threads: Capture() blocks its caller, a
// worker-pool thread, for ten seconds at most; the chain runs on the main queue and on whatever
// threads the platform answers on.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "addon/main_queue_work.h"
#include "platform/screen_capture.h"

namespace deskhand {

struct CaptureRequest {
  std::vector<std::string> exclude_bundle_ids;  // UTF-8, compared exactly
  double quality = 0;                           // JPEG compression factor
  uint32_t display_id = 0;                      // 0: the main display
};

/// A captured display in global desktop points.
struct DisplayGeometry {
  uint32_t id = 0;
  int32_t width = 0;
  int32_t height = 0;
  int32_t origin_x = 0;
  int32_t origin_y = 0;
};

struct Screenshot {
  std::string base64;
  int32_t width = 0;  // pixels
  int32_t height = 0;
  DisplayGeometry display;  // left zero by region capture
};

/// What is asked of the platform once the display is known.
struct CapturePlan {
  platform::CaptureConfiguration configuration;
  DisplayGeometry display;
};
using CapturePlanner = std::function<CapturePlan(const platform::ShareableDisplay&)>;

struct CaptureMessages {
  const char* capture_failed;
  const char* encoding_failed;
  const char* timed_out;
};

/// Takes the picture that `plan` describes, without the applications to leave out.
Outcome<Screenshot> Capture(const CaptureRequest& request, CapturePlanner plan,
                            const CaptureMessages& messages);

}  // namespace deskhand
