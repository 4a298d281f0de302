#include "apps/hit_test.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"

namespace deskhand {
namespace {

using platform::FakeApplications;
using platform::FakeWindow;
using Calls = std::vector<std::string>;

class HitTest : public testing::Test {
 protected:
  void SetUp() override {
    FakeApplications::Reset();
    mac().running = {{.bundle_id = "com.a", .name = "A", .pid = 10},
                     {.bundle_id = "com.b", .name = "B", .pid = 20},
                     {.bundle_id = "com.apple.dock", .name = "Dock", .pid = 30},
                     {.name = "Bare", .pid = 40},
                     {.bundle_id = "com.host", .pid = mac().own_pid}};
  }
  static FakeApplications& mac() { return FakeApplications::Get(); }
  static std::string HitAt(double x, double y) {
    const auto app = AppAt({x, y});
    return app ? app->bundle_id : "nothing";
  }
};

TEST_F(HitTest, TheFrontmostWindowUnderThePointDecides) {
  mac().windows = {{{.pid = 10, .bounds = Rect{0, 0, 50, 50}}, {.pid = 20}}};
  EXPECT_EQ(HitAt(25, 25), "com.a");
  EXPECT_EQ(HitAt(75, 75), "com.b");
  EXPECT_EQ(HitAt(200, 200), "nothing");
}

TEST_F(HitTest, LeftAndTopEdgesAreInsideRightAndBottomOnesAreNot) {
  mac().windows = {{{.pid = 10, .bounds = Rect{10, 20, 30, 40}}}};
  EXPECT_EQ(HitAt(10, 20), "com.a");
  EXPECT_EQ(HitAt(39.9, 59.9), "com.a");
  EXPECT_EQ(HitAt(40, 20), "nothing");
  EXPECT_EQ(HitAt(10, 60), "nothing");
  EXPECT_EQ(HitAt(9.9, 20), "nothing");
}

TEST_F(HitTest, AWindowOfNegativeSizeHasTheSameEdges) {
  mac().windows = {{{.pid = 10, .bounds = Rect{40, 60, -30, -40}}}};
  EXPECT_EQ(HitAt(10, 20), "com.a");
  EXPECT_EQ(HitAt(40, 60), "nothing");
}

TEST_F(HitTest, TheDockIsLookedThroughByItsIdentifierAndByItsOwnerName) {
  mac().windows = {{{.pid = 30}, {.pid = 20, .owner_name = "Dock"}, {.pid = 10}}};
  EXPECT_EQ(HitAt(5, 5), "com.a");
}

TEST_F(HitTest, APointOverSkippedWindowsOnlyIsNothing) {
  mac().windows = {{{.pid = 30}, {.pid = 10, .owner_name = "Window Server"}}};
  EXPECT_EQ(HitAt(5, 5), "nothing");
}

TEST_F(HitTest, SkippedNamesAreComparedExactly) {
  mac().windows = {{{.pid = 10, .owner_name = "dock"}}};
  EXPECT_EQ(HitAt(5, 5), "com.a");
}

TEST_F(HitTest, ATransparentWindowIsPassedOver) {
  mac().windows = {{{.pid = 10, .alpha = 0.0f}, {.pid = 20, .alpha = std::nullopt}}};
  EXPECT_EQ(HitAt(5, 5), "com.b");
}

TEST_F(HitTest, TheHostsOwnWindowsAreNeverReported) {
  mac().windows = {{{.pid = mac().own_pid}, {.pid = 10}}};
  EXPECT_EQ(HitAt(5, 5), "com.a");
}

TEST_F(HitTest, WindowsThatTellTooLittleArePassedOver) {
  mac().windows = {{{},
                    {.pid = 10, .layer = std::nullopt},
                    {.pid = 10, .layer = 25},
                    {.pid = 10, .bounds = std::nullopt},
                    {.pid = 99},  // has ended
                    {.pid = 40},  // has no identifier
                    {.pid = 20}}};
  EXPECT_EQ(HitAt(5, 5), "com.b");
}

TEST_F(HitTest, ApplicationsAreLookedUpForWindowsThatHoldThePointOnly) {
  mac().windows = {{{.pid = 10, .layer = 3},
                    {.pid = 10, .owner_name = "Dock"},
                    {.pid = 10, .bounds = Rect{50, 50, 10, 10}},
                    {.pid = 20}}};
  EXPECT_EQ(HitAt(5, 5), "com.b");
  EXPECT_EQ(mac().calls, (Calls{"bounds of 2", "bounds of 3", "owner of 3", "bundle id of 20",
                                "bundle id of 20"}));
}

TEST_F(HitTest, WithoutAWindowListThereIsNothing) {
  mac().windows = std::nullopt;
  EXPECT_EQ(HitAt(5, 5), "nothing");
}

}  // namespace
}  // namespace deskhand
