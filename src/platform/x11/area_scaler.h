// Scaling of a picture by averaging areas, which keeps small text legible.
// Pixels: 4 bytes, the last ignored. Pure; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/x11/scaling_kernels.h"

namespace deskhand::platform {

/// Which source pixels each target pixel of an axis is made of: consecutive ones, each with a
/// weight. The weights add up to the axis' unit where the target pixel lies inside the source, to
/// less where it sticks out, as if the outside were black.
struct AxisWeights {
  struct Span {
    int32_t first = 0;  // source pixel
    int32_t count = 0;
    size_t offset = 0;  // of the first weight
  };
  std::vector<Span> spans;  // one per target pixel
  std::vector<uint16_t> weights;
};

/// Weights for the target pixels of an axis that show the source from `start` over `length`, in
/// source pixels; both may be fractional and reach beyond the `source_size` pixels there are.
/// `length` is finite and above 0. Each target pixel averages the area it covers; where the picture
/// is enlarged, it takes its two neighbours' mean by distance.
AxisWeights MakeAxisWeights(int32_t source_size, double start, double length, int32_t target_size,
                            uint32_t unit);

/// A picture in memory, not owned.
struct Picture {
  const uint8_t* pixels = nullptr;
  size_t stride = 0;  // bytes
  int32_t width = 0;
  int32_t height = 0;
};

/// The part of a picture to show, in its pixels.
struct Window {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool operator==(const Window&) const = default;
};

/// How a window is scaled, whatever the pixels are: the costly part of making a scaler.
class ScalePlan {
 public:
  struct Sizes {
    int32_t source_width = 0;
    int32_t source_height = 0;
    Window window;
    int32_t target_width = 0;
    int32_t target_height = 0;
    bool operator==(const Sizes&) const = default;
  };
  explicit ScalePlan(const Sizes& sizes);

  const Sizes& sizes() const { return sizes_; }

 private:
  friend class AreaScaler;

  void FillColumns(const AxisWeights& columns);

  const Sizes sizes_;
  const bool is_copy_;  // every target pixel is a source pixel
  AxisWeights rows_;
  // Columns, two source pixels at a time: a target pixel starts at the source pixel `first_`, and
  // has `pairs_` pairs of weights, each weight once for every byte of its pixel.
  std::vector<int32_t> first_;
  std::vector<uint16_t> pair_weights_;
  int32_t pairs_ = 1;
};

/// Scales row by row, so that the whole target never needs to be in memory.
class AreaScaler {
 public:
  /// `plan` is for a picture of the size of `source`.
  AreaScaler(const Picture& source, std::shared_ptr<const ScalePlan> plan);

  /// Row `y` of the target, 4 bytes a pixel: in `room`, or in the source where that has it as it
  /// is.
  const uint8_t* Row(int32_t y, uint8_t* room);

 private:
  void WeighColumns(uint8_t* target) const;
  void WeighManyColumns(uint8_t* target) const;

  const Picture source_;
  const std::shared_ptr<const ScalePlan> plan_;
  const ScalingKernels& kernels_;
  std::vector<uint16_t>
      summed_;  // the weighted sum of a target row's source rows, and zeros behind
};

}  // namespace deskhand::platform
