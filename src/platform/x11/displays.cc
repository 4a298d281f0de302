#include "platform/displays.h"

#include <algorithm>
#include <chrono>

#include "platform/x11/active_window.h"
#include "platform/x11/call_snapshot.h"
#include "platform/x11/monitors.h"
#include "platform/x11/session.h"

namespace deskhand::platform {
namespace {

// The JavaScript thread waits for these answers.
constexpr std::chrono::seconds kLongestWait{2};

/// The seam's space has its origin at the bottom-left corner of the primary monitor, y up.
Screen ToScreen(const Monitor& monitor, const Monitor& primary) {
  const PixelRect& bounds = monitor.bounds;
  const int32_t primary_bottom = primary.bounds.y + primary.bounds.height;
  return {
      .id = monitor.id,
      .frame = {.x = double(bounds.x - primary.bounds.x),
                .y = double(primary_bottom - (bounds.y + bounds.height)),
                .width = double(bounds.width),
                .height = double(bounds.height)},
      .scale_factor = 1,  // a point is a pixel here
      .name = monitor.name,
  };
}

std::vector<Monitor> AskForMonitors() {
  const Session session(QueryChannel(), Clock::now() + kLongestWait);
  if (!session) return {};
  return QueryMonitors(session).value_or(std::vector<Monitor>());
}

/// The monitors as they are now; within one call always the same answer, asked for once. Good until
/// this thread asks again.
const std::vector<Monitor>& MonitorsNow() {
  thread_local std::vector<Monitor> latest;
  CallSnapshot* snapshot = CurrentCallSnapshot();
  if (!snapshot) return latest = AskForMonitors();
  if (!snapshot->monitors) snapshot->monitors = AskForMonitors();
  return *snapshot->monitors;
}

/// The right and bottom edges belong to the neighbours.
bool Contains(const PixelRect& rect, double x, double y) {
  return x >= rect.x && x < rect.x + rect.width && y >= rect.y && y < rect.y + rect.height;
}

}  // namespace

std::vector<Screen> Screens() {
  const std::vector<Monitor>& monitors = MonitorsNow();
  std::vector<Screen> screens;
  screens.reserve(monitors.size());
  for (const Monitor& monitor : monitors) screens.push_back(ToScreen(monitor, monitors.front()));
  return screens;
}

std::optional<Screen> MainScreen() {
  const std::vector<Monitor>& monitors = MonitorsNow();
  if (monitors.empty()) return std::nullopt;
  const Session session(QueryChannel(), Clock::now() + kLongestWait);
  if (!session) return std::nullopt;
  const auto window = ActiveWindowBounds(session);
  if (!window) return std::nullopt;
  const int32_t x = window->x + window->width / 2;
  const int32_t y = window->y + window->height / 2;
  const auto holder = std::find_if(monitors.begin(), monitors.end(), [&](const Monitor& monitor) {
    return Contains(monitor.bounds, x, y);
  });
  if (holder == monitors.end()) return std::nullopt;
  return ToScreen(*holder, monitors.front());
}

double PrimaryScreenHeight() {
  const std::vector<Monitor>& monitors = MonitorsNow();
  return monitors.empty() ? 0 : monitors.front().bounds.height;
}

std::optional<uint32_t> DisplayAt(Point point) {
  const std::vector<Monitor>& monitors = MonitorsNow();
  if (monitors.empty()) return std::nullopt;
  const PixelRect& primary = monitors.front().bounds;
  const double x = point.x + primary.x;
  const double y = point.y + primary.y;
  const auto holder = std::find_if(monitors.begin(), monitors.end(), [&](const Monitor& monitor) {
    return Contains(monitor.bounds, x, y);
  });
  if (holder == monitors.end()) return std::nullopt;
  return holder->id;
}

uint32_t MainDisplayId() {
  const std::vector<Monitor>& monitors = MonitorsNow();
  return monitors.empty() ? 0 : monitors.front().id;
}

}  // namespace deskhand::platform
