#include "platform/x11/scaling_kernels.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

/// The kernels that this processor can run.
std::vector<const ScalingKernels*> AllKernels() {
  std::vector<const ScalingKernels*> all = {&kPortableKernels};
  if (&BestScalingKernels() != all.front()) all.push_back(&BestScalingKernels());
  return all;
}

std::mt19937& Random() {
  static std::mt19937 random(1);
  return random;
}

/// Weights that add up to `unit`.
std::vector<uint16_t> WeightsOf(int32_t count, uint32_t unit) {
  std::vector<uint16_t> weights(count, static_cast<uint16_t>(unit / count));
  weights[Random()() % count] += unit % count;
  return weights;
}

TEST(ScalingKernels, SumRowsOfAnyNumberAndLength) {
  for (const ScalingKernels* kernels : AllKernels()) {
    for (const int32_t count : {1, 2, 3, 4, 5, 9}) {
      for (const int32_t bytes : {4, 28, 32, 60, 64, 68, 1000}) {
        const size_t stride = bytes + 12;
        std::vector<uint8_t> pixels(stride * count);
        for (uint8_t& byte : pixels) byte = static_cast<uint8_t>(Random()());
        const auto weights = WeightsOf(count, kRowUnit);
        std::vector<uint16_t> sums(bytes + 1, 0xabcd);
        kernels->sum_rows({pixels.data(), stride, count, bytes}, weights.data(), sums.data());
        for (int32_t byte = 0; byte < bytes; ++byte) {
          uint32_t expected = 0;
          for (int32_t row = 0; row < count; ++row) {
            expected += pixels[row * stride + byte] * weights[row];
          }
          ASSERT_EQ(sums[byte], expected) << count << " rows, byte " << byte << " of " << bytes;
        }
        EXPECT_EQ(sums[bytes], 0xabcd) << "wrote beyond " << bytes << " bytes";
      }
    }
  }
}

/// One target byte: of every second source pixel apart, as the kernels add them up.
uint8_t Weighed(const uint16_t* sums, const uint16_t* weights, int32_t pairs, int byte) {
  uint32_t sum = 0;
  for (int32_t at = byte; at < pairs * kLanes; at += kBytesPerPixel) {
    sum += uint32_t{sums[at]} * weights[at] >> 16;
  }
  return static_cast<uint8_t>((sum + kRowUnit / 2) >> 8);
}

TEST(ScalingKernels, WeighColumnsOfAnyNumber) {
  for (const ScalingKernels* kernels : AllKernels()) {
    for (const int32_t pairs : {1, 2, 4}) {
      for (const int32_t width : {1, 2, 3, 4, 5, 7, 8, 41}) {
        const int32_t filled = (width + kPixelsAtATime - 1) / kPixelsAtATime * kPixelsAtATime;
        std::vector<int32_t> first(filled);
        std::vector<uint16_t> weights;
        for (int32_t& pixel : first) {
          pixel = static_cast<int32_t>(Random()() % 50);
          for (const uint16_t weight : WeightsOf(2 * pairs, kColumnUnit)) {
            weights.insert(weights.end(), kBytesPerPixel, weight);
          }
        }
        std::vector<uint16_t> sums(50 * kBytesPerPixel + pairs * kLanes);
        for (uint16_t& sum : sums) sum = static_cast<uint16_t>(Random()() % (255 * kRowUnit + 1));
        std::vector<uint8_t> target(width * kBytesPerPixel + 1, 0xab);
        kernels->weigh_columns({first.data(), weights.data(), pairs}, sums.data(), width,
                               target.data());
        for (int32_t at = 0; at < width * kBytesPerPixel; ++at) {
          const int32_t x = at / kBytesPerPixel;
          ASSERT_EQ(target[at],
                    Weighed(&sums[size_t{kBytesPerPixel} * first[x]],
                            &weights[size_t(kLanes) * pairs * x], pairs, at % kBytesPerPixel))
              << pairs << " pairs, byte " << at << " of " << width << " pixels";
        }
        EXPECT_EQ(target.back(), 0xab) << "wrote beyond " << width << " pixels";
      }
    }
  }
}

}  // namespace
}  // namespace deskhand::platform
