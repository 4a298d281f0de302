#include "platform/x11/monitors.h"

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

TEST(MonitorIds, DependOnTheNameAlone) {
  const auto both = MonitorIds({"HDMI-1", "DP-2"});
  EXPECT_EQ(MonitorIds({"DP-2"}).front(), both[1]);
  EXPECT_EQ(MonitorIds({"HDMI-1"}).front(), both[0]);
  EXPECT_NE(both[0], both[1]);
}

TEST(MonitorIds, AreUniqueAndNeverZeroEvenForEqualNames) {
  const auto ids = MonitorIds({"", "same", "same", "same"});
  for (const uint32_t id : ids) EXPECT_NE(id, 0u);
  EXPECT_NE(ids[1], ids[2]);
  EXPECT_NE(ids[2], ids[3]);
}

TEST(Intersect, IsEmptyWhereRectanglesDoNotMeet) {
  EXPECT_EQ(Intersect({0, 0, 10, 10}, {5, -5, 10, 10}), (PixelRect{5, 0, 5, 5}));
  EXPECT_TRUE(Intersect({0, 0, 10, 10}, {10, 0, 10, 10}).empty());
  EXPECT_TRUE(Intersect({0, 0, 10, 10}, {-30000, 40000, 5, 5}).empty());
}

}  // namespace
}  // namespace deskhand::platform
