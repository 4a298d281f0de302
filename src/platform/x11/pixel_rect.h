// Rectangles of whole pixels. Pure; any thread.
#pragma once

#include <cstdint>
#include <vector>

namespace deskhand::platform {

/// Wide enough for any arithmetic on the X protocol's 16-bit values.
struct PixelRect {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool empty() const { return width <= 0 || height <= 0; }
  bool operator==(const PixelRect&) const = default;
};

PixelRect Intersect(const PixelRect& a, const PixelRect& b);

PixelRect Shift(const PixelRect& rect, int32_t x, int32_t y);

bool Contains(const PixelRect& outer, const PixelRect& inner);

/// What of `areas` is left without `removed`.
std::vector<PixelRect> Subtract(const std::vector<PixelRect>& areas, const PixelRect& removed);

}  // namespace deskhand::platform
