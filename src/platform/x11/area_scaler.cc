#include "platform/x11/area_scaler.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

#include <simde/x86/sse2.h>

namespace deskhand::platform {
namespace {

// Rows: a byte times 256 fills 16 bits. Columns: such a sum times 65536 fills 32.
constexpr uint32_t kRowUnit = 256;
constexpr uint32_t kColumnUnit = 65535;
constexpr int kBytesPerPixel = 4;

// Two pixels side by side fill a vector of eight 16-bit lanes.
constexpr int kLanes = 2 * kBytesPerPixel;
constexpr int kPixelsAtATime = 4;
constexpr int kCacheLine = 64;  // bytes; where it is not, it costs a little

// Each product that is cut to its upper half loses a little; this few of them do not matter.
constexpr int32_t kMostPairsOfVectors = 4;

/// Some rows of the source.
struct SourceRows {
  const uint8_t* first;
  size_t stride;  // bytes
  int32_t count;
  int32_t bytes;  // of a row
};

/// What the pixels of a target row are made of: consecutive source pixels, in pairs.
struct Columns {
  const int32_t* first;     // source pixel, for each target pixel
  const uint16_t* weights;  // of each pair, once for every byte of its pixels
};

using Vector = simde__m128i;

Vector Load(const void* from) { return simde_mm_loadu_si128(static_cast<const Vector*>(from)); }

/// Most of the time goes by waiting for the source's memory. The rows that come next are asked for
/// now, which the processor does not do by itself across pages; beyond the picture it does no harm.
void FetchNext(const SourceRows& rows, int32_t byte) {
  if (byte % kCacheLine != 0) return;
  for (int32_t row = rows.count; row < 2 * rows.count; ++row) {
    __builtin_prefetch(rows.first + row * rows.stride + byte, /*rw=*/0, /*locality=*/2);
  }
}

/// The rows' bytes times the weight of their row, added up. `kCount` rows, so that the loop over
/// them is unrolled; 0 stands for any number.
template <int kCount>
void SumSomeRows(const SourceRows& rows, const uint16_t* weights, uint16_t* sums) {
  const int32_t count = kCount > 0 ? kCount : rows.count;
  const Vector zero = simde_mm_setzero_si128();
  int32_t byte = 0;
  for (; byte + 2 * kLanes <= rows.bytes; byte += 2 * kLanes) {
    FetchNext(rows, byte);
    Vector low = zero, high = zero;
    for (int32_t row = 0; row < count; ++row) {
      const Vector pixels = Load(rows.first + row * rows.stride + byte);
      const Vector weight = simde_mm_set1_epi16(static_cast<int16_t>(weights[row]));
      low = simde_mm_add_epi16(low,
                               simde_mm_mullo_epi16(simde_mm_unpacklo_epi8(pixels, zero), weight));
      high = simde_mm_add_epi16(high,
                                simde_mm_mullo_epi16(simde_mm_unpackhi_epi8(pixels, zero), weight));
    }
    auto* const to = reinterpret_cast<Vector*>(sums + byte);
    simde_mm_storeu_si128(to, low);
    simde_mm_storeu_si128(to + 1, high);
  }
  for (; byte < rows.bytes; ++byte) {
    uint32_t sum = 0;
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

/// One target pixel, still in two halves: that of the even source pixels and that of the odd ones.
template <int kPairs>
Vector Weigh(const uint16_t* sums, const uint16_t* weights) {
  Vector both = simde_mm_setzero_si128();
  for (int pair = 0; pair < kPairs; ++pair) {
    both = simde_mm_add_epi16(
        both, simde_mm_mulhi_epu16(Load(sums + pair * kLanes), Load(weights + pair * kLanes)));
  }
  return both;
}

Vector AddHalves(Vector one, Vector other) {
  const Vector sum =
      simde_mm_add_epi16(simde_mm_unpacklo_epi64(one, other), simde_mm_unpackhi_epi64(one, other));
  return simde_mm_srli_epi16(simde_mm_add_epi16(sum, simde_mm_set1_epi16(kRowUnit / 2)), 8);
}

template <int kPairs>
void WeighPairs(const Columns& columns, const uint16_t* sums, int32_t width, uint8_t* target) {
  const uint16_t* weights = columns.weights;
  for (int32_t x = 0; x < width; x += kPixelsAtATime) {
    Vector pixels[kPixelsAtATime];
    for (int index = 0; index < kPixelsAtATime; ++index, weights += kPairs * kLanes) {
      pixels[index] =
          Weigh<kPairs>(sums + std::ptrdiff_t{kBytesPerPixel} * columns.first[x + index], weights);
    }
    const Vector four =
        simde_mm_packus_epi16(AddHalves(pixels[0], pixels[1]), AddHalves(pixels[2], pixels[3]));
    uint8_t* const to = target + std::ptrdiff_t{kBytesPerPixel} * x;
    if (width - x >= kPixelsAtATime) {
      simde_mm_storeu_si128(reinterpret_cast<Vector*>(to), four);
    } else {
      std::memcpy(to, &four, size_t{kBytesPerPixel} * (width - x));
    }
  }
}

/// Rounds shares of a whole to integers that add up to the rounded whole.
void AppendRounded(const std::vector<double>& shares, uint32_t unit,
                   std::vector<uint16_t>* weights) {
  double exact = 0;
  uint32_t given = 0;
  for (const double share : shares) {
    exact += share * unit;
    const auto upto = static_cast<uint32_t>(std::lround(exact));
    weights->push_back(static_cast<uint16_t>(upto - given));
    given = upto;
  }
}

bool IsCopy(const ScalePlan::Sizes& sizes) {
  const Window& window = sizes.window;
  return window.width == sizes.target_width && window.height == sizes.target_height &&
         window.x >= 0 && window.x == std::floor(window.x) &&
         window.x + window.width <= sizes.source_width && window.y >= 0 &&
         window.y == std::floor(window.y) && window.y + window.height <= sizes.source_height;
}

}  // namespace

AxisWeights MakeAxisWeights(int32_t source_size, double start, double length, int32_t target_size,
                            uint32_t unit) {
  AxisWeights axis;
  const double step = length / target_size;
  // Narrower than a source pixel, the covered area would give blocks; a pixel's width gives the
  // straight line between neighbours.
  const double reach = std::max(step, 1.0) / 2;
  std::vector<double> shares;
  for (int32_t target = 0; target < target_size; ++target) {
    const double middle = start + (target + 0.5) * step;
    // Nothing from beyond the shown part bleeds in.
    const double from = std::max(middle - reach, start);
    const double to = std::min(middle + reach, start + length);
    const double inside_from = std::clamp(from, 0.0, double(source_size));
    const double inside_to = std::clamp(to, 0.0, double(source_size));
    AxisWeights::Span span{.offset = axis.weights.size()};
    shares.clear();
    if (inside_to > inside_from && to > from) {
      span.first = static_cast<int32_t>(inside_from);
      const int32_t end = std::min(source_size, static_cast<int32_t>(std::ceil(inside_to)));
      for (int32_t pixel = span.first; pixel < end; ++pixel) {
        const double covered =
            std::min(inside_to, pixel + 1.0) - std::max(inside_from, double(pixel));
        shares.push_back(covered / (to - from));
      }
    }
    span.count = static_cast<int32_t>(shares.size());
    AppendRounded(shares, unit, &axis.weights);
    axis.spans.push_back(span);
  }
  return axis;
}

ScalePlan::ScalePlan(const Sizes& sizes) : sizes_(sizes), is_copy_(IsCopy(sizes)) {
  if (is_copy_) return;
  const Window& window = sizes.window;
  rows_ =
      MakeAxisWeights(sizes.source_height, window.y, window.height, sizes.target_height, kRowUnit);
  FillColumns(
      MakeAxisWeights(sizes.source_width, window.x, window.width, sizes.target_width, kColumnUnit));
}

void ScalePlan::FillColumns(const AxisWeights& columns) {
  for (const AxisWeights::Span& span : columns.spans) {
    pairs_ = std::max(pairs_, (span.count + 1) / 2);
  }
  if (pairs_ <= kMostPairsOfVectors) pairs_ = static_cast<int32_t>(std::bit_ceil(uint32_t(pairs_)));
  const size_t spans = columns.spans.size();
  const size_t filled = (spans + kPixelsAtATime - 1) / kPixelsAtATime * kPixelsAtATime;
  pair_weights_.resize(size_t{kLanes} * pairs_ * filled);
  first_.resize(filled);
  uint16_t* weight = pair_weights_.data();
  for (size_t x = 0; x < spans; ++x, weight += size_t{kLanes} * pairs_) {
    const AxisWeights::Span& span = columns.spans[x];
    first_[x] = span.first;
    for (int32_t index = 0; index < span.count; ++index) {
      std::fill_n(weight + index * kBytesPerPixel, kBytesPerPixel,
                  columns.weights[span.offset + index]);
    }
  }
}

AreaScaler::AreaScaler(const Picture& source, std::shared_ptr<const ScalePlan> plan)
    : source_(source), plan_(std::move(plan)) {
  if (plan_->is_copy_) return;
  // Pairs may reach beyond the last pixel, with weights of zero.
  summed_.resize(size_t{kBytesPerPixel} * source.width + size_t{kLanes} * plan_->pairs_);
}

void AreaScaler::WeighColumns(uint8_t* target) const {
  const Columns columns{.first = plan_->first_.data(), .weights = plan_->pair_weights_.data()};
  const int32_t width = plan_->sizes_.target_width;
  switch (plan_->pairs_) {
    case 1:
      return WeighPairs<1>(columns, summed_.data(), width, target);
    case 2:
      return WeighPairs<2>(columns, summed_.data(), width, target);
    case kMostPairsOfVectors:
      return WeighPairs<kMostPairsOfVectors>(columns, summed_.data(), width, target);
    default:
      return WeighManyColumns(target);
  }
}

void AreaScaler::WeighManyColumns(uint8_t* target) const {
  const uint16_t* weights = plan_->pair_weights_.data();
  const int32_t lanes = plan_->pairs_ * kLanes;
  for (int32_t x = 0; x < plan_->sizes_.target_width; ++x, weights += lanes) {
    const uint16_t* const sums = summed_.data() + size_t{kBytesPerPixel} * plan_->first_[x];
    for (int byte = 0; byte < kBytesPerPixel; ++byte) {
      uint32_t sum = 1u << 23;  // half of the last place, to round
      for (int32_t at = byte; at < lanes; at += kBytesPerPixel) {
        sum += uint32_t{sums[at]} * weights[at];
      }
      *target++ = static_cast<uint8_t>(sum >> 24);
    }
  }
}

const uint8_t* AreaScaler::Row(int32_t y, uint8_t* room) {
  if (plan_->is_copy_) {
    const auto left = static_cast<size_t>(plan_->sizes_.window.x);
    const auto top = static_cast<size_t>(plan_->sizes_.window.y);
    return source_.pixels + (top + y) * source_.stride + left * kBytesPerPixel;
  }
  const AxisWeights::Span& span = plan_->rows_.spans[y];
  SumRows({.first = source_.pixels + span.first * source_.stride,
           .stride = source_.stride,
           .count = span.count,
           .bytes = source_.width * kBytesPerPixel},
          plan_->rows_.weights.data() + span.offset, summed_.data());
  WeighColumns(room);
  return room;
}

}  // namespace deskhand::platform
