// The innermost loops of the area scaler, for the processor at hand. Pure; any thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace deskhand::platform {

// Rows: a byte times 256 fills 16 bits. Columns: such a sum times 65536 fills 32.
inline constexpr uint32_t kRowUnit = 256;
inline constexpr uint32_t kColumnUnit = 65535;

inline constexpr int kBytesPerPixel = 4;
// Two pixels side by side fill a vector of eight 16-bit lanes.
inline constexpr int kLanes = 2 * kBytesPerPixel;
inline constexpr int kPixelsAtATime = 4;
// Each product that is cut to its upper half loses a little; this few of them do not matter.
inline constexpr int32_t kMostPairsOfVectors = 4;

/// Some rows of the source.
struct SourceRows {
  const uint8_t* first;
  size_t stride;  // bytes
  int32_t count;
  int32_t bytes;  // of a row
};

/// What the pixels of a target row are made of: consecutive source pixels, in pairs. Of all three,
/// there are as many as a multiple of kPixelsAtATime needs.
struct Columns {
  const int32_t* first;     // source pixel, for each target pixel
  const uint16_t* weights;  // of each pair, once for every byte of its pixels
  int32_t pairs;            // of each target pixel: 1, 2 or 4
};

struct ScalingKernels {
  /// The rows' bytes times the weight of their row, added up.
  void (*sum_rows)(const SourceRows& rows, const uint16_t* weights, uint16_t* sums);

  /// `width` target pixels, made of a row of sums.
  void (*weigh_columns)(const Columns& columns, const uint16_t* sums, int32_t width,
                        uint8_t* target);
};

/// For any processor that the program runs on.
extern const ScalingKernels kPortableKernels;

/// For x86 processors that have AVX2; there only.
extern const ScalingKernels kAvx2Kernels;

/// The fastest that this processor can run. All give the same.
const ScalingKernels& BestScalingKernels();

}  // namespace deskhand::platform
