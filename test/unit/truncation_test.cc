#include "capture/truncation.h"

#include <climits>
#include <cmath>

#include <gtest/gtest.h>

namespace deskhand {
namespace {

TEST(TruncateToInt32, DropsTheFraction) {
  EXPECT_EQ(TruncateToInt32(1.9), 1);
  EXPECT_EQ(TruncateToInt32(-1.9), -1);
  EXPECT_EQ(TruncateToInt32(2147483646.9), INT_MAX - 1);
}

TEST(TruncateToInt32, SaturatesBeyondTheRange) {
  EXPECT_EQ(TruncateToInt32(1e300), INT_MAX);
  EXPECT_EQ(TruncateToInt32(-1e300), INT_MIN);
  EXPECT_EQ(TruncateToInt32(INFINITY), INT_MAX);
  EXPECT_EQ(TruncateToInt32(-INFINITY), INT_MIN);
}

TEST(TruncateToInt32, TakesNaNAsZero) { EXPECT_EQ(TruncateToInt32(NAN), 0); }

}  // namespace
}  // namespace deskhand
