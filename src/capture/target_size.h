// The size of a screenshot: small enough for two budgets at once, never enlarged.
// Units: physical pixels in, image pixels out. Pure; any thread.
#pragma once

#include <cstdint>

namespace deskhand {

struct PixelSize {
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const PixelSize&) const = default;
};

/// The largest size of the same proportions with no edge over 1568 pixels and no more than 1568
/// tiles of 28 x 28 pixels; {0, 0} when an edge is below 1. A short edge is kept at 1 at least.
PixelSize TargetSize(int32_t width, int32_t height);

}  // namespace deskhand
