#include "apps/ordinary_windows.h"

#include <algorithm>

namespace deskhand {

bool IsOrdinaryWindow(const platform::WindowList& windows, size_t index, int32_t own_pid) {
  const auto pid = platform::OwnerProcessId(windows, index);
  if (!pid || *pid == own_pid) return false;
  const auto layer = platform::LayerOf(windows, index);
  if (!layer || *layer != 0) return false;
  const auto alpha = platform::AlphaOf(windows, index);
  return !alpha || *alpha > 0.0f;
}

double MinX(const Rect& rect) { return std::min(rect.x, rect.x + rect.width); }
double MaxX(const Rect& rect) { return std::max(rect.x, rect.x + rect.width); }
double MinY(const Rect& rect) { return std::min(rect.y, rect.y + rect.height); }
double MaxY(const Rect& rect) { return std::max(rect.y, rect.y + rect.height); }

Point CentreOf(const Rect& rect) { return {rect.x + rect.width / 2, rect.y + rect.height / 2}; }

}  // namespace deskhand
