#include "platform/windows.h"

#include "platform/x11/call_snapshot.h"
#include "platform/x11/desktop_look.h"
#include "platform/x11/monitors.h"

namespace deskhand::platform {

struct WindowList {
  std::shared_ptr<const DesktopLook> look;
  std::vector<size_t> shown;  // which of its windows
  PixelRect primary;          // of the monitors: where the global space begins

  const ScreenWindow& window(size_t index) const { return look->windows[shown[index]]; }
  const RunningApplicationRef& owner(size_t index) const { return look->owners[shown[index]]; }
};

namespace {

/// None when the server does not say. What the rest of the call asks about monitors has the same
/// answer.
std::optional<PixelRect> PrimaryMonitor(const Session& session) {
  CallSnapshot* const snapshot = CurrentCallSnapshot();
  std::optional<std::vector<Monitor>> monitors;
  if (snapshot) monitors = snapshot->monitors;
  if (!monitors) monitors = QueryMonitors(session);
  if (!monitors || monitors->empty()) return std::nullopt;
  const PixelRect primary = monitors->front().bounds;
  if (snapshot) snapshot->monitors = std::move(monitors);
  return primary;
}

}  // namespace

WindowListRef OnScreenWindows() {
  Session session(QueryChannel(), Clock::now() + kLongestQuestion);
  if (!session) return nullptr;
  const auto primary = PrimaryMonitor(session);
  if (!primary) return nullptr;
  const auto look = LookAtDesktop(session);
  if (!look) return nullptr;
  auto list = std::make_shared<WindowList>();
  list->look = look;
  list->primary = *primary;
  for (size_t index = 0; index < look->windows.size(); ++index) {
    const ScreenWindow& window = look->windows[index];
    if (window.is_shown && !window.is_desktop) list->shown.push_back(index);
  }
  return list;
}

size_t CountOf(const WindowList& windows) { return windows.shown.size(); }

std::optional<int32_t> OwnerProcessId(const WindowList& windows, size_t index) {
  return windows.owner(index)->process_id;
}

std::optional<int32_t> LayerOf(const WindowList& windows, size_t index) {
  return windows.window(index).layer;
}

std::optional<float> AlphaOf(const WindowList& windows, size_t index) {
  return windows.window(index).alpha;
}

std::optional<std::string> OwnerName(const WindowList& windows, size_t index) {
  return windows.owner(index)->name;
}

std::optional<Rect> BoundsOf(const WindowList& windows, size_t index) {
  const PixelRect& bounds = windows.window(index).bounds;
  return Rect{.x = double(bounds.x - windows.primary.x),
              .y = double(bounds.y - windows.primary.y),
              .width = double(bounds.width),
              .height = double(bounds.height)};
}

RunningApplicationRef OwnerOf(const WindowList& windows, size_t index) {
  return windows.owner(index);
}

}  // namespace deskhand::platform
