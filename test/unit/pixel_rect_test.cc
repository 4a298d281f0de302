#include "platform/x11/pixel_rect.h"

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

/// How many of `areas` hold a pixel.
int CountAt(const std::vector<PixelRect>& areas, int32_t x, int32_t y) {
  int count = 0;
  for (const PixelRect& area : areas) count += Contains(area, {x, y, 1, 1}) ? 1 : 0;
  return count;
}

TEST(PixelRect, ContainsWhatLiesWithinIt) {
  EXPECT_TRUE(Contains({0, 0, 10, 10}, {0, 0, 10, 10}));
  EXPECT_TRUE(Contains({0, 0, 10, 10}, {9, 9, 1, 1}));
  EXPECT_FALSE(Contains({0, 0, 10, 10}, {9, 9, 2, 1}));
  EXPECT_FALSE(Contains({0, 0, 10, 10}, {-1, 0, 1, 1}));
}

TEST(PixelRect, WithoutAnotherLeavesTheRestAndEachPixelOnce) {
  const PixelRect area{2, 2, 6, 6};
  for (int32_t x = 0; x < 8; ++x) {
    for (int32_t y = 0; y < 8; ++y) {
      for (int32_t size = 1; size < 9; ++size) {
        const PixelRect hole{x, y, size, size};
        const auto left = Subtract({area}, hole);
        for (int32_t row = 0; row < 10; ++row) {
          for (int32_t column = 0; column < 10; ++column) {
            const bool is_left =
                Contains(area, {column, row, 1, 1}) && !Contains(hole, {column, row, 1, 1});
            ASSERT_EQ(CountAt(left, column, row), is_left ? 1 : 0);
          }
        }
      }
    }
  }
}

TEST(PixelRect, IsGoneWithoutOneThatContainsIt) {
  EXPECT_TRUE(Subtract({{2, 2, 3, 3}, {4, 4, 1, 1}}, {0, 0, 10, 10}).empty());
}

}  // namespace
}  // namespace deskhand::platform
