#include "platform/x11/area_scaler.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <simde/x86/sse2.h>

namespace deskhand::platform {
namespace {

// Rows: a byte times 256 fills 16 bits. Columns: such a sum times 65536 fills 32.
constexpr uint32_t kRowUnit = 256;
constexpr uint32_t kColumnUnit = 65535;
constexpr int kBytesPerPixel = 4;

// Two pixels side by side fill a vector of eight 16-bit lanes.
constexpr int kLanes = 2 * kBytesPerPixel;

simde__m128i Load(const void* from) {
  return simde_mm_loadu_si128(static_cast<const simde__m128i*>(from));
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

AreaScaler::AreaScaler(const Picture& source, const Window& window, int32_t target_width,
                       int32_t target_height)
    : source_(source),
      rows_(MakeAxisWeights(source.height, window.y, window.height, target_height, kRowUnit)) {
  const AxisWeights columns =
      MakeAxisWeights(source.width, window.x, window.width, target_width, kColumnUnit);
  for (const AxisWeights::Span& span : columns.spans)
    pairs_ = std::max(pairs_, (span.count + 1) / 2);
  pair_weights_.resize(size_t{kLanes} * pairs_ * target_width);
  first_.reserve(target_width);
  uint16_t* weight = pair_weights_.data();
  for (const AxisWeights::Span& span : columns.spans) {
    first_.push_back(span.first);
    for (int32_t index = 0; index < span.count; ++index) {
      std::fill_n(weight + index * kBytesPerPixel, kBytesPerPixel,
                  columns.weights[span.offset + index]);
    }
    weight += kLanes * pairs_;
  }
  // Pairs may reach beyond the last pixel, with weights of zero.
  summed_.resize(size_t{kBytesPerPixel} * source.width + size_t{kLanes} * pairs_);
}

void AreaScaler::SumRows(const AxisWeights::Span& span) {
  const int32_t bytes = source_.width * kBytesPerPixel;
  const uint8_t* const rows = source_.pixels + span.first * source_.stride;
  const uint16_t* const weights = rows_.weights.data() + span.offset;
  const simde__m128i zero = simde_mm_setzero_si128();
  int32_t byte = 0;
  for (; byte + 2 * kLanes <= bytes; byte += 2 * kLanes) {
    simde__m128i low = zero, high = zero;
    for (int32_t row = 0; row < span.count; ++row) {
      const simde__m128i pixels = Load(rows + row * source_.stride + byte);
      const simde__m128i weight = simde_mm_set1_epi16(static_cast<int16_t>(weights[row]));
      low = simde_mm_add_epi16(low,
                               simde_mm_mullo_epi16(simde_mm_unpacklo_epi8(pixels, zero), weight));
      high = simde_mm_add_epi16(high,
                                simde_mm_mullo_epi16(simde_mm_unpackhi_epi8(pixels, zero), weight));
    }
    auto* const sums = reinterpret_cast<simde__m128i*>(summed_.data() + byte);
    simde_mm_storeu_si128(sums, low);
    simde_mm_storeu_si128(sums + 1, high);
  }
  for (; byte < bytes; ++byte) {
    uint32_t sum = 0;
    for (int32_t row = 0; row < span.count; ++row) {
      sum += rows[row * source_.stride + byte] * weights[row];
    }
    summed_[byte] = static_cast<uint16_t>(sum);
  }
}

template <int kPairs>
void AreaScaler::WeighColumns(uint8_t* target) const {
  // In the lower pixel's lanes only, where the two pixels of a pair are added up in the end.
  const simde__m128i half = simde_mm_srli_si128(simde_mm_set1_epi16(kRowUnit / 2), 8);
  const uint16_t* weights = pair_weights_.data();
  for (const int32_t first : first_) {
    const uint16_t* const sums = summed_.data() + size_t{kBytesPerPixel} * first;
    simde__m128i both = half;
    for (int pair = 0; pair < kPairs; ++pair) {
      both = simde_mm_add_epi16(
          both, simde_mm_mulhi_epu16(Load(sums + pair * kLanes), Load(weights + pair * kLanes)));
    }
    weights += kPairs * kLanes;
    const simde__m128i sum = simde_mm_add_epi16(both, simde_mm_unpackhi_epi64(both, both));
    const simde__m128i pixel = simde_mm_srli_epi16(sum, 8);
    const int32_t bytes = simde_mm_cvtsi128_si32(simde_mm_packus_epi16(pixel, pixel));
    std::memcpy(target, &bytes, sizeof(bytes));
    target += kBytesPerPixel;
  }
}

void AreaScaler::WeighManyColumns(uint8_t* target) const {
  const uint16_t* weights = pair_weights_.data();
  for (const int32_t first : first_) {
    const uint16_t* const sums = summed_.data() + size_t{kBytesPerPixel} * first;
    for (int byte = 0; byte < kBytesPerPixel; ++byte) {
      uint32_t sum = 1u << 23;  // half of the last place, to round
      for (int32_t at = byte; at < pairs_ * kLanes; at += kBytesPerPixel) {
        sum += uint32_t{sums[at]} * weights[at];
      }
      target[byte] = static_cast<uint8_t>(sum >> 24);
    }
    weights += pairs_ * kLanes;
    target += kBytesPerPixel;
  }
}

void AreaScaler::ScaleRow(int32_t y, uint8_t* target) {
  SumRows(rows_.spans[y]);
  // Each product that is cut to its upper half loses a little; few of them do not matter.
  switch (pairs_) {
    case 1:
      return WeighColumns<1>(target);
    case 2:
      return WeighColumns<2>(target);
    case 3:
      return WeighColumns<3>(target);
    case 4:
      return WeighColumns<4>(target);
    default:
      return WeighManyColumns(target);
  }
}

}  // namespace deskhand::platform
