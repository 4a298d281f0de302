// Doubles to 32-bit integers the way the arm64 instruction does it, defined for every input.
#pragma once

#include <cstdint>
#include <limits>

namespace deskhand {

/// Truncates toward zero; saturates beyond the 32-bit range; NaN gives 0.
constexpr int32_t TruncateToInt32(double value) {
  using Limits = std::numeric_limits<int32_t>;
  if (value != value) return 0;
  if (value <= static_cast<double>(Limits::min())) return Limits::min();
  if (value >= static_cast<double>(Limits::max())) return Limits::max();
  return static_cast<int32_t>(value);
}

}  // namespace deskhand
