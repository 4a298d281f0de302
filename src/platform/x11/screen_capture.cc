#include "platform/screen_capture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "platform/call_scope.h"
#include "platform/x11/call_snapshot.h"
#include "platform/x11/captured_image.h"
#include "platform/x11/exclusion.h"
#include "platform/x11/grab.h"
#include "platform/x11/monitors.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

struct ShareableContent {
  std::vector<Monitor> monitors;
  Deadline deadline;  // of the whole request
  // What went wrong with a connection that had been well: the picture then fails for this reason.
  std::optional<std::string> failure;
};

namespace {

// The waiter gives up after ten seconds; the cause should reach it before.
constexpr std::chrono::seconds kRequestTime{8};
constexpr std::chrono::seconds kContentTime{4};

/// What the last content showed. Used on the capture thread only.
std::vector<Monitor>& LastMonitors() {
  static std::vector<Monitor>& monitors = *new std::vector<Monitor>;
  return monitors;
}

/// The content, or none and why.
std::pair<std::shared_ptr<ShareableContent>, std::string> MakeContent(Deadline deadline) {
  auto content = std::make_shared<ShareableContent>();
  content->deadline = deadline;
  const Session session(CaptureChannel(), std::min(deadline, Clock::now() + kContentTime));
  if (!session) return {nullptr, session.error()};
  if (auto monitors = QueryMonitors(session)) {
    LastMonitors() = *monitors;
    content->monitors = std::move(*monitors);
    return {content, {}};
  }
  const std::string lost = session.error();
  if (lost.empty()) return {nullptr, "the X server refused to list its monitors"};
  if (LastMonitors().empty()) return {nullptr, lost};
  // A server that is lost in the middle of its work is a failed picture, not a missing display.
  content->monitors = LastMonitors();
  content->failure = lost;
  return {content, {}};
}

/// The pixels of the root window that show `source`, which is in pixels of the monitor. Clamped as
/// doubles: the caller's rectangle may be anything.
PixelRect Cover(const Rect& source, const PixelRect& monitor) {
  const auto clamp = [](double value, int32_t size) {
    return static_cast<int32_t>(std::clamp(value, 0.0, double(size)));
  };
  const int32_t left = clamp(std::floor(source.x), monitor.width);
  const int32_t top = clamp(std::floor(source.y), monitor.height);
  const int32_t right = clamp(std::ceil(source.x + source.width), monitor.width);
  const int32_t bottom = clamp(std::ceil(source.y + source.height), monitor.height);
  return {monitor.x + left, monitor.y + top, right - left, bottom - top};
}

bool IsUsable(const Rect& source) {
  for (const double value : {source.x, source.y, source.width, source.height}) {
    if (!std::isfinite(value)) return false;
  }
  return source.width > 0 && source.height > 0;
}

struct TakenImage {
  CapturedImage image;
  std::string error;
};

TakenImage TakeImage(const CaptureFilter& filter, const CaptureConfiguration& configuration) {
  TakenImage taken;
  const ShareableContent& content = *filter.content;
  if (content.failure) {
    taken.error = *content.failure;
    return taken;
  }
  const PixelRect monitor = content.monitors[filter.display].bounds;
  const Rect whole{0, 0, double(monitor.width), double(monitor.height)};
  const Rect source = configuration.source_rect.value_or(whole);
  if (!IsUsable(source)) {
    taken.error = "the region has no area";
    return taken;
  }
  Session session(CaptureChannel(), content.deadline);
  if (!session) {
    taken.error = session.error();
    return taken;
  }
  Grab grab = GrabWithout(filter.excluded_bundle_ids, session, Cover(source, monitor),
                          configuration.shows_cursor);
  taken.error = std::move(grab.error);
  taken.image = {.memory = std::move(grab.memory),
                 .picture = grab.picture,
                 .window = {monitor.x + source.x - grab.area.x, monitor.y + source.y - grab.area.y,
                            source.width, source.height}};
  return taken;
}

/// Runs `work` on the capture thread. When there is none to be had it is dropped, and the waiter
/// times out.
void PostToCaptureThread(std::function<void()> work) {
  CaptureThread().Post([work = std::move(work)] {
    const CallScope scope;
    work();
  });
}

}  // namespace

std::vector<ShareableDisplay> Displays(const ShareableContent& content) {
  std::vector<ShareableDisplay> displays;
  for (const Monitor& monitor : content.monitors) {
    displays.push_back({monitor.id, monitor.bounds.width, monitor.bounds.height});
  }
  return displays;
}

std::vector<std::optional<std::string>> ApplicationBundleIds(const ShareableContent&) {
  // Windows are looked at in the moment of the picture; any list made before it may be wrong then.
  return {};
}

void GetShareableContent(ContentHandler handler) {
  const Deadline deadline = Clock::now() + kRequestTime;
  PostToCaptureThread([deadline, handler = std::move(handler)] {
    auto [content, error] = MakeContent(deadline);
    if (!content) {
      handler(nullptr, error);
      return;
    }
    // Whatever else this call asks about displays agrees with the content.
    CurrentCallSnapshot()->monitors = content->monitors;
    handler(std::move(content), std::nullopt);
  });
}

void CaptureImage(const CaptureFilter& filter, const CaptureConfiguration& configuration,
                  ImageHandler handler) {
  PostToCaptureThread([filter, configuration, handler = std::move(handler)] {
    const TakenImage taken = TakeImage(filter, configuration);
    if (taken.error.empty()) {
      handler(&taken.image, std::nullopt);
    } else {
      handler(nullptr, taken.error);
    }
  });
}

}  // namespace deskhand::platform
