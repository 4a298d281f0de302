#include "platform/x11/screen_windows.h"

#include <algorithm>

namespace deskhand::platform {
namespace {

constexpr int32_t kDesktopLayer = -1, kDockLayer = 1, kMenuLayer = 2, kNotificationLayer = 3,
                  kOverrideLayer = 4;

// Windows may be transient in a circle.
constexpr int kLongestChain = 16;

PixelRect Grow(const PixelRect& rect, const Margins& by) {
  return {rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right,
          rect.height + by.top + by.bottom};
}

PixelRect VisibleBounds(const TopWindow& top, const ApplicationWindow& window) {
  PixelRect bounds = top.bounds;
  if (window.id != top.id && window.role.frame) {
    // Frames may be larger than what is seen of them, so that they are easy to grab.
    const PixelRect frame = Intersect(bounds, Grow(window.bounds, *window.role.frame));
    if (!frame.empty()) bounds = frame;
  }
  const Margins& shadow = window.role.shadow;
  const PixelRect body = Grow(bounds, {-shadow.left, -shadow.right, -shadow.top, -shadow.bottom});
  return body.empty() ? bounds : body;
}

/// The windows that stand for the top-level ones: those that a window manager has put into them,
/// else themselves.
std::vector<size_t> FindSpeakers(const WindowTree& tree) {
  std::vector<size_t> speakers(tree.tops.size(), SIZE_MAX);
  const auto rank = [&tree](size_t index) {
    const ApplicationWindow& window = tree.applications[index];
    const bool is_top = window.id == tree.tops[window.top].id;
    if (!is_top && window.is_managed) return 3;
    if (is_top) return window.has_name() ? 2 : 0;
    // In a frame without a name, whose content nobody calls managed.
    return window.has_name() ? 1 : -1;
  };
  for (size_t index = 0; index < tree.applications.size(); ++index) {
    size_t& speaker = speakers[tree.applications[index].top];
    if (speaker == SIZE_MAX || rank(index) > rank(speaker)) speaker = index;
  }
  return speakers;
}

ScreenWindow Describe(const TopWindow& top, const ApplicationWindow& window, bool has_manager) {
  const WindowRole& role = window.role;
  const bool is_managed = role.state != WindowState::kWithdrawn;
  const bool is_shown = top.is_shown && !role.is_minimized;
  const bool is_iconified =
      is_managed && (has_manager ? role.is_minimized : role.state == WindowState::kIconic);
  const int32_t layer = LayerOf(role);
  return {
      .id = window.id,
      .top = top.id,
      .bounds = VisibleBounds(top, window),
      .alpha = static_cast<float>(top.opacity) / static_cast<float>(UINT32_MAX),
      .layer = layer,
      .is_desktop = role.type == WindowType::kDesktop,
      .is_managed = is_managed,
      .is_ordinary = layer == 0,
      .is_shown = is_shown,
      .is_hidden = !is_shown && (is_iconified || (!is_managed && role.is_put_away)),
      .is_put_away = role.is_put_away,
  };
}

}  // namespace

int32_t LayerOf(const WindowRole& role) {
  switch (role.type) {
    case WindowType::kDesktop:
      return kDesktopLayer;
    case WindowType::kDock:
      return kDockLayer;
    case WindowType::kMenu:
      return kMenuLayer;
    case WindowType::kNotification:
      return kNotificationLayer;
    case WindowType::kOrdinary:
      break;
  }
  return role.is_override_redirect ? kOverrideLayer : 0;
}

std::vector<ScreenWindow> FindScreenWindows(const WindowTree& tree, uint32_t manager) {
  const std::vector<size_t> speakers = FindSpeakers(tree);
  std::vector<ScreenWindow> windows;
  for (size_t index = 0; index < tree.tops.size(); ++index) {
    const TopWindow& top = tree.tops[index];
    if (speakers[index] == SIZE_MAX || !top.is_drawable) continue;
    if (top.bounds.width <= 1 && top.bounds.height <= 1) continue;
    const ApplicationWindow& speaker = tree.applications[speakers[index]];
    if (manager != 0 && speaker.client == manager) continue;
    ScreenWindow window = Describe(top, speaker, /*has_manager=*/manager != 0);
    if (!window.is_shown && !window.is_hidden && !window.is_managed) continue;
    window.speaker = speakers[index];
    windows.push_back(window);
  }
  return windows;
}

size_t FindNamer(const WindowTree& tree, size_t speaker, const IsKnown& is_known) {
  const auto& all = tree.applications;
  const auto index_of = [&all](const auto& condition) {
    const auto found = std::find_if(all.begin(), all.end(), condition);
    return found == all.end() ? SIZE_MAX : static_cast<size_t>(found - all.begin());
  };
  size_t at = speaker;
  for (int length = 0; length < kLongestChain; ++length) {
    if (is_known(all[at])) return at;
    const xcb_window_t leader = all[at].transient_for;
    const size_t next =
        index_of([leader](const auto& window) { return leader && window.id == leader; });
    if (next == SIZE_MAX) break;
    at = next;
  }
  const ApplicationWindow& window = all[speaker];
  const size_t of_connection = index_of([&](const ApplicationWindow& other) {
    return other.client == window.client && other.has_name() && is_known(other);
  });
  if (of_connection != SIZE_MAX) return of_connection;
  const size_t of_process = index_of([&](const ApplicationWindow& other) {
    return window.facts.process_id != 0 && other.facts.process_id == window.facts.process_id &&
           other.has_name() && is_known(other);
  });
  return of_process == SIZE_MAX ? speaker : of_process;
}

}  // namespace deskhand::platform
