#include "platform/x11/area_scaler.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace deskhand::platform {
namespace {

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
    : source_(source), plan_(std::move(plan)), kernels_(BestScalingKernels()) {
  if (plan_->is_copy_) return;
  // Pairs may reach beyond the last pixel, with weights of zero.
  summed_.resize(size_t{kBytesPerPixel} * source.width + size_t{kLanes} * plan_->pairs_);
}

void AreaScaler::WeighColumns(uint8_t* target) const {
  if (plan_->pairs_ > kMostPairsOfVectors) return WeighManyColumns(target);
  kernels_.weigh_columns({.first = plan_->first_.data(),
                          .weights = plan_->pair_weights_.data(),
                          .pairs = plan_->pairs_},
                         summed_.data(), plan_->sizes_.target_width, target);
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
  kernels_.sum_rows({.first = source_.pixels + span.first * source_.stride,
                     .stride = source_.stride,
                     .count = span.count,
                     .bytes = source_.width * kBytesPerPixel},
                    plan_->rows_.weights.data() + span.offset, summed_.data());
  WeighColumns(room);
  return room;
}

}  // namespace deskhand::platform
