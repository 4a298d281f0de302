// Scaling down by averaging areas, a vertical pass and then a horizontal one for each target row.
// Pixels: 4 bytes each. Frozen: see README.md.
#pragma once

// Native instructions on x86-64; the same operations elsewhere.
#define SIMDE_ENABLE_NATIVE_ALIASES
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include <simde/x86/sse2.h>

/// The source pixels that each target pixel of an axis covers, and their shares of it. The shares
/// of one target pixel add up to `unit`.
struct Axis {
  std::vector<int> first;
  std::vector<std::vector<uint16_t>> shares;
  int most = 0;  // shares of any target pixel

  Axis(int source, int target, int unit) {
    const double step = double(source) / target;
    for (int pixel = 0; pixel < target; ++pixel) {
      const double from = pixel * step, to = (pixel + 1) * step;
      const int begin = int(from + 1e-9), end = std::min(source, int(std::ceil(to - 1e-9)));
      std::vector<uint16_t> row;
      int given = 0;
      for (int k = begin; k < end; ++k) {
        // What has been covered so far, rounded, less what has been given away: no error adds up.
        const int upto = int(std::lround((std::min(to, k + 1.0) - from) / step * unit));
        row.push_back(uint16_t(upto - given));
        given = upto;
      }
      most = std::max(most, int(row.size()));
      first.push_back(begin);
      shares.push_back(std::move(row));
    }
  }
};

class AreaScale {
 public:
  static constexpr int kMostReduction = 32;

  /// The target is not larger than the source, nor smaller than a part in kMostReduction of it.
  AreaScale(int source_width, int source_height, int target_width, int target_height)
      : source_width_(source_width),
        target_width_(target_width),
        target_height_(target_height),
        rows_(source_height, target_height, 256),  // byte x share: 16 bits
        columns_(source_width, target_width, 65535),
        pairs_((columns_.most + 1) / 2),
        sums_(4 * (source_width + 2 * pairs_) + 16) {
    // Each share four times, for the four bytes of its pixel; zeros fill up the last pair.
    weights_.resize(size_t{8} * pairs_ * target_width);
    for (int x = 0; x < target_width; ++x) {
      for (size_t k = 0; k < columns_.shares[x].size(); ++k) {
        std::fill_n(&weights_[(size_t{2} * pairs_ * x + k) * 4], 4, columns_.shares[x][k]);
      }
    }
  }

  /// `source` has rows of 4 * source width bytes, `target` of 4 * target width.
  void Run(const uint8_t* source, uint8_t* target) {
    for (int y = 0; y < target_height_; ++y) {
      const std::vector<uint16_t>& shares = rows_.shares[y];
      const uint8_t* from = source + size_t{4} * source_width_ * rows_.first[y];
      switch (shares.size()) {
        case 1:
          SumRows<1>(from, shares);
          break;
        case 2:
          SumRows<2>(from, shares);
          break;
        case 3:
          SumRows<3>(from, shares);
          break;
        case 4:
          SumRows<4>(from, shares);
          break;
        default:
          SumRows<0>(from, shares);
      }
      uint8_t* to = target + size_t{4} * target_width_ * y;
      switch (pairs_) {
        case 1:
          WeighColumns<1>(to);
          break;
        case 2:
          WeighColumns<2>(to);
          break;
        default:
          WeighColumns<0>(to);
      }
    }
  }

 private:
  static __m128i Load(const void* from) { return _mm_loadu_si128((const __m128i*)from); }

  /// The weighted sum of some source rows. A template, like the next one, so that the loops over
  /// the few shares are unrolled; 0 stands for any number.
  template <int kCount>
  void SumRows(const uint8_t* rows, const std::vector<uint16_t>& shares) {
    const size_t stride = size_t{4} * source_width_;
    const int count = kCount ? kCount : int(shares.size());
    const __m128i zero = _mm_setzero_si128();
    __m128i share[kCount ? kCount : kMostReduction + 2];
    for (int k = 0; k < count; ++k) share[k] = _mm_set1_epi16(short(shares[k]));
    size_t i = 0;
    for (; i + 16 <= stride; i += 16) {
      __m128i low = zero, high = zero;
#pragma GCC unroll 4
      for (int k = 0; k < count; ++k) {
        const __m128i bytes = Load(rows + k * stride + i);
        low = _mm_add_epi16(low, _mm_mullo_epi16(_mm_unpacklo_epi8(bytes, zero), share[k]));
        high = _mm_add_epi16(high, _mm_mullo_epi16(_mm_unpackhi_epi8(bytes, zero), share[k]));
      }
      _mm_storeu_si128((__m128i*)&sums_[i], low);
      _mm_storeu_si128((__m128i*)&sums_[i + 8], high);
    }
    for (; i < stride; ++i) {
      sums_[i] = 0;
      for (int k = 0; k < count; ++k) sums_[i] += rows[k * stride + i] * shares[k];
    }
  }

  template <int kPairs>
  void WeighColumns(uint8_t* target) const {
    const int pairs = kPairs ? kPairs : pairs_;
    const uint16_t* weight = weights_.data();
    for (int x = 0; x < target_width_; ++x, weight += 8 * pairs) {
      const uint16_t* sum = &sums_[size_t{4} * columns_.first[x]];
      __m128i two = _mm_setzero_si128();  // pixels' worth of 16-bit sums
#pragma GCC unroll 2
      for (int k = 0; k < pairs; ++k) {
        two = _mm_add_epi16(two, _mm_mulhi_epu16(Load(sum + 8 * k), Load(weight + 8 * k)));
      }
      const __m128i one = _mm_add_epi16(two, _mm_unpackhi_epi64(two, two));
      const __m128i pixel = _mm_srli_epi16(_mm_adds_epu16(one, _mm_set1_epi16(128)), 8);
      const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(pixel, pixel));
      std::memcpy(target + 4 * x, &bytes, 4);
    }
  }

  const int source_width_, target_width_, target_height_;
  const Axis rows_, columns_;
  const int pairs_;
  std::vector<uint16_t> sums_, weights_;
};
