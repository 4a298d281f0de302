#include "apps/window_records.h"

#include <optional>
#include <utility>

#include "apps/ordinary_windows.h"
#include "platform/displays.h"

namespace deskhand {
namespace {

uint32_t DisplayOf(const Rect& bounds) {
  const auto display = platform::DisplayAt(CentreOf(bounds));
  return display ? *display : platform::MainDisplayId();
}

/// None for a window that is not to be listed.
std::optional<WindowRecord> RecordAt(const platform::WindowList& windows, size_t index,
                                     int32_t own_pid) {
  if (!IsOrdinaryWindow(windows, index, own_pid)) return std::nullopt;
  const auto bounds = platform::BoundsOf(windows, index);
  if (!bounds) return std::nullopt;
  const auto owner = platform::OwnerOf(windows, index);
  if (!owner) return std::nullopt;
  auto bundle_id = platform::BundleId(*owner);
  if (!bundle_id) return std::nullopt;
  return WindowRecord{
      .bundle_id = std::move(*bundle_id),
      .pid = platform::OwnerProcessId(windows, index).value_or(0),
      .bounds = *bounds,
      .display_id = DisplayOf(*bounds),
  };
}

}  // namespace

std::vector<WindowRecord> WindowRecords() {
  const int32_t own_pid = platform::OwnProcessId();
  std::vector<WindowRecord> records;
  const auto windows = platform::OnScreenWindows();
  if (!windows) return records;
  const size_t count = platform::CountOf(*windows);
  for (size_t index = 0; index < count; ++index) {
    if (auto record = RecordAt(*windows, index, own_pid)) records.push_back(std::move(*record));
  }
  return records;
}

}  // namespace deskhand
