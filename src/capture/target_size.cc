#include "capture/target_size.h"

#include <algorithm>
#include <cmath>

namespace deskhand {
namespace {

constexpr double kMaxEdge = 1568.0;
constexpr double kTileEdge = 28.0;
constexpr double kMaxTiles = 1568.0;
constexpr int kBisectionRounds = 64;

bool WithinBudgets(double width, double height) {
  if (width > kMaxEdge || height > kMaxEdge) return false;
  return std::ceil(width / kTileEdge) * std::ceil(height / kTileEdge) <= kMaxTiles;
}

}  // namespace

PixelSize TargetSize(int32_t width, int32_t height) {
  if (width < 1 || height < 1) return {0, 0};
  if (WithinBudgets(width, height)) return {width, height};

  // `feasible` only ever takes scales that fit, so the result does too.
  double feasible = 0.0;
  double infeasible = 1.0;
  for (int round = 0; round < kBisectionRounds; ++round) {
    const double middle = (infeasible + feasible) * 0.5;
    const bool fits = WithinBudgets(std::floor(middle * width), std::floor(middle * height));
    (fits ? feasible : infeasible) = middle;
  }
  return {std::max(1, static_cast<int32_t>(std::floor(feasible * width))),
          std::max(1, static_cast<int32_t>(std::floor(feasible * height)))};
}

}  // namespace deskhand
