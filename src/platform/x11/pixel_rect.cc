#include "platform/x11/pixel_rect.h"

#include <algorithm>

namespace deskhand::platform {

PixelRect Intersect(const PixelRect& a, const PixelRect& b) {
  const int32_t left = std::max(a.x, b.x);
  const int32_t top = std::max(a.y, b.y);
  const int32_t right = std::min(a.x + a.width, b.x + b.width);
  const int32_t bottom = std::min(a.y + a.height, b.y + b.height);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

PixelRect Shift(const PixelRect& rect, int32_t x, int32_t y) {
  return {rect.x + x, rect.y + y, rect.width, rect.height};
}

bool Contains(const PixelRect& outer, const PixelRect& inner) {
  return Intersect(outer, inner) == inner;
}

std::vector<PixelRect> Subtract(const std::vector<PixelRect>& areas, const PixelRect& removed) {
  std::vector<PixelRect> left;
  const auto keep = [&left](int32_t x, int32_t y, int32_t right, int32_t bottom) {
    if (right > x && bottom > y) left.push_back({x, y, right - x, bottom - y});
  };
  for (const PixelRect& area : areas) {
    const PixelRect hole = Intersect(area, removed);
    if (hole.empty()) {
      left.push_back(area);
      continue;
    }
    const int32_t right = area.x + area.width;
    const int32_t bottom = area.y + area.height;
    keep(area.x, area.y, right, hole.y);
    keep(area.x, hole.y, hole.x, hole.y + hole.height);
    keep(hole.x + hole.width, hole.y, right, hole.y + hole.height);
    keep(area.x, hole.y + hole.height, right, bottom);
  }
  return left;
}

}  // namespace deskhand::platform
