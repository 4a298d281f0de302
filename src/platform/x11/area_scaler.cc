#include "platform/x11/area_scaler.h"

#include <algorithm>
#include <cmath>

namespace deskhand::platform {
namespace {

// Rows: a byte times 256 fills 16 bits. Columns: such a sum times 65536 fills 32.
constexpr uint32_t kRowUnit = 256;
constexpr uint32_t kColumnUnit = 65535;
constexpr int kBytesPerPixel = 4;

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
      columns_(MakeAxisWeights(source.width, window.x, window.width, target_width, kColumnUnit)),
      rows_(MakeAxisWeights(source.height, window.y, window.height, target_height, kRowUnit)),
      summed_(static_cast<size_t>(source.width) * kBytesPerPixel) {}

void AreaScaler::SumRows(const AxisWeights::Span& span) {
  const size_t count = summed_.size();
  uint16_t* const sums = summed_.data();
  std::fill_n(sums, count, uint16_t{0});
  for (int32_t index = 0; index < span.count; ++index) {
    const uint8_t* const row = source_.pixels + (span.first + index) * source_.stride;
    const uint16_t weight = rows_.weights[span.offset + index];
    for (size_t byte = 0; byte < count; ++byte) {
      sums[byte] = static_cast<uint16_t>(sums[byte] + row[byte] * weight);
    }
  }
}

void AreaScaler::ScaleRow(int32_t y, uint8_t* target) {
  SumRows(rows_.spans[y]);
  for (const AxisWeights::Span& span : columns_.spans) {
    const uint16_t* const weights = columns_.weights.data() + span.offset;
    const uint16_t* const sums = summed_.data() + size_t{kBytesPerPixel} * span.first;
    uint32_t blue = 1u << 23, green = 1u << 23, red = 1u << 23;  // half of the last place, to round
    for (int32_t index = 0; index < span.count; ++index) {
      const uint32_t weight = weights[index];
      blue += sums[kBytesPerPixel * index] * weight;
      green += sums[kBytesPerPixel * index + 1] * weight;
      red += sums[kBytesPerPixel * index + 2] * weight;
    }
    target[0] = static_cast<uint8_t>(blue >> 24);
    target[1] = static_cast<uint8_t>(green >> 24);
    target[2] = static_cast<uint8_t>(red >> 24);
    target[3] = 0xff;
    target += kBytesPerPixel;
  }
}

}  // namespace deskhand::platform
