#include "capture/target_size.h"

#include <climits>
#include <cmath>

#include <gtest/gtest.h>

namespace deskhand {
void PrintTo(const PixelSize& size, std::ostream* out) {
  *out << size.width << " x " << size.height;
}

namespace {

TEST(TargetSize, KeepsASizeThatIsWithinBothBudgets) {
  EXPECT_EQ(TargetSize(1000, 1000), (PixelSize{1000, 1000}));
  EXPECT_EQ(TargetSize(1568, 28), (PixelSize{1568, 28}));
  EXPECT_EQ(TargetSize(1, 1), (PixelSize{1, 1}));
}

TEST(TargetSize, ReducesASizeThatIsOverTheTileBudgetAlone) {
  EXPECT_EQ(TargetSize(1120, 1120), (PixelSize{1092, 1092}));
  EXPECT_EQ(TargetSize(1568, 1568), (PixelSize{1092, 1092}));
}

TEST(TargetSize, ReducesCommonDisplaysToKnownSizes) {
  EXPECT_EQ(TargetSize(1920, 1080), (PixelSize{1456, 819}));
  EXPECT_EQ(TargetSize(2880, 1800), (PixelSize{1390, 868}));
  EXPECT_EQ(TargetSize(3024, 1964), (PixelSize{1372, 891}));
  EXPECT_EQ(TargetSize(3840, 2160), (PixelSize{1456, 819}));
}

TEST(TargetSize, KeepsTheShortEdgeOfAThinSizeAtOne) {
  EXPECT_EQ(TargetSize(1, 100000), (PixelSize{1, 1568}));
  EXPECT_EQ(TargetSize(1569, 1), (PixelSize{1568, 1}));
  EXPECT_EQ(TargetSize(INT_MAX, 1), (PixelSize{1568, 1}));
}

TEST(TargetSize, IsZeroWhenAnEdgeIsBelowOne) {
  for (const auto& [width, height] : {PixelSize{0, 10}, {10, 0}, {-1, 10}, {10, INT_MIN}}) {
    EXPECT_EQ(TargetSize(width, height), (PixelSize{0, 0}));
  }
}

TEST(TargetSize, NeverExceedsABudget) {
  for (int32_t width = 1; width < 9000; width += 97) {
    for (int32_t height = 1; height < 9000; height += 89) {
      const PixelSize size = TargetSize(width, height);
      EXPECT_LE(size.width, 1568);
      EXPECT_LE(size.height, 1568);
      EXPECT_LE(std::ceil(size.width / 28.0) * std::ceil(size.height / 28.0), 1568);
      EXPECT_GE(size.width, 1);
      EXPECT_GE(size.height, 1);
    }
  }
}

}  // namespace
}  // namespace deskhand
