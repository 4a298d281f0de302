// The kernels' one text, which is compiled once for each kind of processor: by the file that
// includes it, which gives DESKHAND_KERNELS its name. Nothing here may become a function that
// files compiled for different processors share, so no templates of the standard library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <simde/x86/avx2.h>

#include "platform/x11/scaling_kernels.h"

namespace deskhand::platform {
namespace {

constexpr int kCacheLine = 64;     // bytes; where it is not, it costs a little
constexpr int kBytesAtATime = 32;  // of a source row

using Vector = simde__m256i;  // two vectors of 128 bits where the processor has no larger ones

Vector Load(const void* from) { return simde_mm256_loadu_si256(static_cast<const Vector*>(from)); }

void Store(Vector vector, void* to) { simde_mm256_storeu_si256(static_cast<Vector*>(to), vector); }

/// Most of the time goes by waiting for the source's memory. The rows that come next are asked for
/// now, which the processor does not do by itself across pages; beyond the picture it does no harm.
void FetchNext(const SourceRows& rows, int32_t byte) {
  if (byte % kCacheLine != 0) return;
  for (int32_t row = rows.count; row < 2 * rows.count; ++row) {
    __builtin_prefetch(rows.first + row * rows.stride + byte, /*rw=*/0, /*locality=*/2);
  }
}

/// `kCount` rows, so that the loop over them is unrolled; 0 stands for any number.
template <int kCount>
void SumSomeRows(const SourceRows& rows, const uint16_t* weights, uint16_t* sums) {
  const int32_t count = kCount > 0 ? kCount : rows.count;
  const Vector zero = simde_mm256_setzero_si256();
  int32_t byte = 0;
  for (; byte + kBytesAtATime <= rows.bytes; byte += kBytesAtATime) {
    FetchNext(rows, byte);
    Vector low = zero, high = zero;
#pragma GCC unroll 4
    for (int32_t row = 0; row < count; ++row) {
      const Vector pixels = Load(rows.first + row * rows.stride + byte);
      const Vector weight = simde_mm256_set1_epi16(static_cast<int16_t>(weights[row]));
      low = simde_mm256_add_epi16(
          low, simde_mm256_mullo_epi16(simde_mm256_unpacklo_epi8(pixels, zero), weight));
      high = simde_mm256_add_epi16(
          high, simde_mm256_mullo_epi16(simde_mm256_unpackhi_epi8(pixels, zero), weight));
    }
    // Unpacking works on each half of a vector by itself.
    Store(simde_mm256_permute2x128_si256(low, high, 0x20), sums + byte);
    Store(simde_mm256_permute2x128_si256(low, high, 0x31), sums + byte + kBytesAtATime / 2);
  }
  for (; byte < rows.bytes; ++byte) {
    uint32_t sum = 0;
#pragma GCC unroll 4
    for (int32_t row = 0; row < count; ++row) {
      sum += rows.first[row * rows.stride + byte] * weights[row];
    }
    sums[byte] = static_cast<uint16_t>(sum);
  }
}

void SumRows(const SourceRows& rows, const uint16_t* weights, uint16_t* sums) {
  switch (rows.count) {
    case 1:
      return SumSomeRows<1>(rows, weights, sums);
    case 2:
      return SumSomeRows<2>(rows, weights, sums);
    case 3:
      return SumSomeRows<3>(rows, weights, sums);
    case 4:
      return SumSomeRows<4>(rows, weights, sums);
    default:
      return SumSomeRows<0>(rows, weights, sums);
  }
}

/// One target pixel, still in four parts: those of every fourth source pixel.
template <int kPairs>
Vector Weigh(const uint16_t* sums, const uint16_t* weights) {
  if constexpr (kPairs == 1) {
    const simde__m128i pair =
        simde_mm_mulhi_epu16(simde_mm_loadu_si128(reinterpret_cast<const simde__m128i*>(sums)),
                             simde_mm_loadu_si128(reinterpret_cast<const simde__m128i*>(weights)));
    return simde_mm256_inserti128_si256(simde_mm256_setzero_si256(), pair, 0);
  }
  Vector four = simde_mm256_mulhi_epu16(Load(sums), Load(weights));
#pragma GCC unroll 4
  for (int pair = 2; pair < kPairs; pair += 2) {
    four = simde_mm256_add_epi16(
        four, simde_mm256_mulhi_epu16(Load(sums + pair * kLanes), Load(weights + pair * kLanes)));
  }
  return four;
}

/// The even parts and the odd ones of two pixels, added up.
Vector AddParts(Vector one, Vector other) {
  return simde_mm256_add_epi16(simde_mm256_unpacklo_epi64(one, other),
                               simde_mm256_unpackhi_epi64(one, other));
}

template <int kPairs>
void WeighPairs(const Columns& columns, const uint16_t* sums, int32_t width, uint8_t* target) {
  const uint16_t* weights = columns.weights;
  for (int32_t x = 0; x < width; x += kPixelsAtATime) {
    Vector pixels[kPixelsAtATime];
// Without it the vectors go through memory.
#pragma GCC unroll 4
    for (int index = 0; index < kPixelsAtATime; ++index, weights += kPairs * kLanes) {
      pixels[index] =
          Weigh<kPairs>(sums + ptrdiff_t{kBytesPerPixel} * columns.first[x + index], weights);
    }
    const Vector left = AddParts(pixels[0], pixels[1]);
    const Vector right = AddParts(pixels[2], pixels[3]);
    const Vector whole = simde_mm256_add_epi16(simde_mm256_permute2x128_si256(left, right, 0x20),
                                               simde_mm256_permute2x128_si256(left, right, 0x31));
    const Vector rounded = simde_mm256_srli_epi16(
        simde_mm256_add_epi16(whole, simde_mm256_set1_epi16(kRowUnit / 2)), 8);
    const simde__m128i four = simde_mm_packus_epi16(simde_mm256_castsi256_si128(rounded),
                                                    simde_mm256_extracti128_si256(rounded, 1));
    uint8_t* const to = target + ptrdiff_t{kBytesPerPixel} * x;
    if (width - x >= kPixelsAtATime) {
      simde_mm_storeu_si128(reinterpret_cast<simde__m128i*>(to), four);
    } else {
      std::memcpy(to, &four, size_t{kBytesPerPixel} * (width - x));
    }
  }
}

void WeighColumns(const Columns& columns, const uint16_t* sums, int32_t width, uint8_t* target) {
  switch (columns.pairs) {
    case 1:
      return WeighPairs<1>(columns, sums, width, target);
    case 2:
      return WeighPairs<2>(columns, sums, width, target);
    default:
      return WeighPairs<kMostPairsOfVectors>(columns, sums, width, target);
  }
}

}  // namespace

const ScalingKernels DESKHAND_KERNELS{.sum_rows = SumRows, .weigh_columns = WeighColumns};

}  // namespace deskhand::platform
