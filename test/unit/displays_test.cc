// Which display holds a point. The test has a server of its own.
#include "platform/displays.h"

#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

#include "unit/private_xvfb.h"

namespace deskhand {
namespace {

using platform::DisplayAt;

TEST(DisplayAt, IsTheOneWhoseHalfOpenRectangleHoldsThePoint) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  // The right one is primary, so that the left one has negative places.
  ASSERT_EQ(std::system("xrandr --setmonitor left 640/169x720/190+0+0 screen &&"
                        "xrandr --setmonitor '*right' 640/169x600/158+640+0 none"),
            0);
  const auto screens = platform::Screens();
  ASSERT_EQ(screens.size(), 2u);
  const auto right = screens[0].id;
  const auto left = screens[1].id;
  EXPECT_EQ(DisplayAt({0, 0}), right);
  EXPECT_EQ(DisplayAt({-0.25, 0}), left);
  EXPECT_EQ(DisplayAt({-640, 719.75}), left);
  EXPECT_EQ(DisplayAt({639.75, 599.75}), right);
  for (const Point outside : {Point{-640.25, 0}, Point{-1, 720}, Point{640, 0}, Point{1, 600},
                              Point{0, -0.25}, Point{std::numeric_limits<double>::quiet_NaN(), 0},
                              Point{std::numeric_limits<double>::infinity(), 0}}) {
    EXPECT_EQ(DisplayAt(outside), std::nullopt) << outside.x << ", " << outside.y;
  }
}

TEST(DisplayAt, IsNoneWithoutAServer) {
  PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  ASSERT_TRUE(DisplayAt({0, 0}));
  server.Kill();
  EXPECT_EQ(DisplayAt({0, 0}), std::nullopt);
}

}  // namespace
}  // namespace deskhand
