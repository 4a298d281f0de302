#include "apps/window_records.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"
#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakeApplications;
using platform::FakePlatform;
using Calls = std::vector<std::string>;

class WindowRecordsTest : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    FakeApplications::Reset();
    mac().running = {{.bundle_id = "com.a", .name = "A", .pid = 10},
                     {.bundle_id = "com.b", .name = "B", .pid = 20},
                     {.name = "Bare", .pid = 40},
                     {.bundle_id = "com.host", .pid = mac().own_pid}};
    FakePlatform::Get().main_display_id = 1;
    FakePlatform::Get().screens = {{.id = 1, .frame = {0, 0, 1000, 800}},
                                   {.id = 2, .frame = {1200, 0, 1000, 800}}};
  }
  static FakeApplications& mac() { return FakeApplications::Get(); }
};

TEST_F(WindowRecordsTest, TwoWindowsOfOneApplicationAreTwoRecordsFrontToBack) {
  mac().windows = {{{.pid = 10, .bounds = Rect{1, 2.5, 30, 40}}, {.pid = 10}, {.pid = 20}}};
  const auto records = WindowRecords();
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].bundle_id, "com.a");
  EXPECT_EQ(records[0].pid, 10);
  EXPECT_EQ(records[0].bounds.x, 1);
  EXPECT_EQ(records[0].bounds.y, 2.5);
  EXPECT_EQ(records[0].bounds.width, 30);
  EXPECT_EQ(records[0].bounds.height, 40);
  EXPECT_EQ(records[1].bundle_id, "com.a");
  EXPECT_EQ(records[2].bundle_id, "com.b");
}

TEST_F(WindowRecordsTest, OnlyAWindowKnownToBeTransparentIsLeftOut) {
  mac().windows = {{{.pid = 10, .alpha = 0.0f},
                    {.pid = 10, .alpha = -1.0f},
                    {.pid = 20, .alpha = std::nullopt}}};
  const auto records = WindowRecords();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].pid, 20);
}

TEST_F(WindowRecordsTest, WindowsOfOtherLayersOrThatTellTooLittleAreLeftOut) {
  mac().windows = {{{},
                    {.pid = 10, .layer = std::nullopt},
                    {.pid = 10, .layer = 25},
                    {.pid = 10, .bounds = std::nullopt},
                    {.pid = 99},
                    {.pid = 40},
                    {.pid = mac().own_pid}}};
  EXPECT_TRUE(WindowRecords().empty());
}

TEST_F(WindowRecordsTest, ADisplayIsTheOneWithTheCentreOfTheWindow) {
  mac().windows = {{{.pid = 10, .bounds = Rect{700, 0, 1100, 100}},    // centre at 1250
                    {.pid = 10, .bounds = Rect{1050, 0, 100, 100}},    // in the gap
                    {.pid = 10, .bounds = Rect{0, -500, 100, 100}}}};  // off every display
  const auto records = WindowRecords();
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].display_id, 2u);
  EXPECT_EQ(records[1].display_id, 1u);
  EXPECT_EQ(records[2].display_id, 1u);
}

TEST_F(WindowRecordsTest, ApplicationsAreLookedUpForWindowsThatPassedAllElse) {
  mac().windows = {{{.pid = 10, .layer = 3}, {.pid = 10, .bounds = std::nullopt}, {.pid = 20}}};
  EXPECT_EQ(WindowRecords().size(), 1u);
  EXPECT_EQ(mac().calls, (Calls{"bounds of 1", "bounds of 2", "owner of 2", "bundle id of 20"}));
}

TEST_F(WindowRecordsTest, WithoutAWindowListThereAreNone) {
  mac().windows = std::nullopt;
  EXPECT_TRUE(WindowRecords().empty());
}

}  // namespace
}  // namespace deskhand
