// Scaling of a picture by averaging areas, which keeps small text legible.
// Pixels: 4 bytes, the last ignored. Pure; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

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
};

/// Scales row by row, so that the whole target never needs to be in memory.
class AreaScaler {
 public:
  AreaScaler(const Picture& source, const Window& window, int32_t target_width,
             int32_t target_height);

  /// Writes row `y` of the target, 4 bytes a pixel.
  void ScaleRow(int32_t y, uint8_t* target);

 private:
  void SumRows(const AxisWeights::Span& span);
  template <int kPairs>
  void WeighColumns(uint8_t* target) const;
  void WeighManyColumns(uint8_t* target) const;

  const Picture source_;
  const AxisWeights rows_;
  // Columns, two source pixels at a time: a target pixel starts at the source pixel `first_`, and
  // has `pairs_` pairs of weights, each weight once for every byte of its pixel.
  std::vector<int32_t> first_;
  std::vector<uint16_t> pair_weights_;
  int32_t pairs_ = 1;
  std::vector<uint16_t>
      summed_;  // the weighted sum of a target row's source rows, and zeros behind
};

}  // namespace deskhand::platform
