#include "apps/hit_test.h"

#include <string>
#include <unordered_set>

#include "apps/ordinary_windows.h"
#include "platform/windows.h"

namespace deskhand {
namespace {

const std::unordered_set<std::string>& HitTestSkipBundleIds() {
  static const std::unordered_set<std::string> ids = {
      "com.apple.screencaptureui", "com.apple.dock",         "com.apple.notificationcenterui",
      "com.apple.controlcenter",   "com.apple.Spotlight",    "com.apple.WindowManager",
      "com.apple.SystemUIServer",  "com.apple.WindowServer",
  };
  return ids;
}

const std::unordered_set<std::string>& HitTestSkipOwnerNames() {
  static const std::unordered_set<std::string> names = {"Window Server", "Dock"};
  return names;
}

/// The left and the top edge belong to a window, the right and the bottom one do not.
bool Contains(const Rect& rect, Point point) {
  return point.x >= MinX(rect) && point.x < MaxX(rect) && point.y >= MinY(rect) &&
         point.y < MaxY(rect);
}

/// Null unless the window takes part and lies under the point.
platform::RunningApplicationRef OwnerUnder(const platform::WindowList& windows, size_t index,
                                           int32_t own_pid, Point point) {
  if (!IsOrdinaryWindow(windows, index, own_pid)) return nullptr;
  const auto owner_name = platform::OwnerName(windows, index);
  if (owner_name && HitTestSkipOwnerNames().contains(*owner_name)) return nullptr;
  const auto bounds = platform::BoundsOf(windows, index);
  if (!bounds || !Contains(*bounds, point)) return nullptr;
  return platform::OwnerOf(windows, index);
}

}  // namespace

std::optional<AppInfo> AppAt(Point point) {
  const int32_t own_pid = platform::OwnProcessId();
  const auto windows = platform::OnScreenWindows();
  if (!windows) return std::nullopt;
  const size_t count = platform::CountOf(*windows);
  for (size_t index = 0; index < count; ++index) {
    const auto owner = OwnerUnder(*windows, index, own_pid, point);
    if (!owner) continue;
    const auto bundle_id = platform::BundleId(*owner);
    if (bundle_id && !HitTestSkipBundleIds().contains(*bundle_id)) return AppInfoOf(*owner);
  }
  return std::nullopt;
}

}  // namespace deskhand
