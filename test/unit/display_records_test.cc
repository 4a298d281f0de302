#include "displays/display_records.h"

#include <gtest/gtest.h>

#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakePlatform;
using platform::Screen;

/// A primary screen of 1440 x 900 points whose identifier is 1.
const Screen kPrimary{.id = 1, .frame = {0, 0, 1440, 900}, .scale_factor = 2, .name = "Built-in"};

class DisplayRecordsTest : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    mac().main_display_id = 1;
    mac().screens = {kPrimary};
  }
  static FakePlatform& mac() { return FakePlatform::Get(); }
};

TEST_F(DisplayRecordsTest, OneBuiltInDisplayIsAtTheOriginAndMain) {
  const auto records = DisplayRecords();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].origin_x, 0);
  EXPECT_EQ(records[0].origin_y, 0);
  EXPECT_EQ(records[0].scale_factor, 2);
  EXPECT_TRUE(records[0].is_main);
  EXPECT_EQ(records[0].name, "Built-in");
}

TEST_F(DisplayRecordsTest, ADisplayAboveThePrimaryHasANegativeOriginY) {
  mac().screens.push_back({.id = 2, .frame = {0, 900, 1920, 1080}, .scale_factor = 1});
  EXPECT_EQ(DisplayRecords()[1].origin_y, -1080);
}

TEST_F(DisplayRecordsTest, ADisplayToTheLeftHasANegativeOriginX) {
  mac().screens.push_back({.id = 2, .frame = {-1920, 0, 1920, 1080}, .scale_factor = 1});
  EXPECT_EQ(DisplayRecords()[1].origin_x, -1920);
}

TEST_F(DisplayRecordsTest, ADisplayBelowTheBottomEdgeLiesFurtherDownThanItsHeightAlone) {
  mac().screens.push_back({.id = 2, .frame = {1440, -200, 800, 600}, .scale_factor = 1});
  EXPECT_GT(DisplayRecords()[1].origin_y, 900 - 600);
  EXPECT_EQ(DisplayRecords()[1].origin_y, 500);
}

TEST_F(DisplayRecordsTest, AScreenWithoutIdentifierLeavesNoHole) {
  mac().screens.push_back({.id = std::nullopt, .frame = {1440, 0, 100, 100}});
  mac().screens.push_back({.id = 3, .frame = {1540, 0, 100, 100}});
  const auto records = DisplayRecords();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].id, 3u);
}

TEST_F(DisplayRecordsTest, AScreenWithoutANameIsCalledDisplay) {
  mac().screens[0].name = std::nullopt;
  EXPECT_EQ(DisplayRecords()[0].name, "Display");
}

TEST_F(DisplayRecordsTest, TheRecordOfADisplayIsItsOwn) {
  mac().screens.push_back({.id = 2, .frame = {1440, 0, 800, 600}, .scale_factor = 1});
  const DisplayRecord record = DisplayRecordFor(2);
  EXPECT_EQ(record.id, 2u);
  EXPECT_EQ(record.width, 800);
  EXPECT_FALSE(record.is_main);
}

TEST_F(DisplayRecordsTest, AnUnknownIdentifierGivesTheMainScreenUnderTheMainIdentifier) {
  mac().screens.push_back({.id = 2, .frame = {1440, 0, 800, 600}, .scale_factor = 1});
  mac().main_screen = mac().screens[1];
  const DisplayRecord record = DisplayRecordFor(99);
  EXPECT_EQ(record.id, 1u);
  EXPECT_TRUE(record.is_main);
  EXPECT_EQ(record.width, 800);
  EXPECT_EQ(record.origin_x, 1440);
}

TEST_F(DisplayRecordsTest, WithoutAMainScreenTheFirstOneServes) {
  EXPECT_EQ(DisplayRecordFor(99).width, 1440);
}

TEST_F(DisplayRecordsTest, WithoutScreensTheRecordIsZeroAndMain) {
  mac().screens.clear();
  const DisplayRecord record = DisplayRecordFor(std::nullopt);
  EXPECT_EQ(record.id, 1u);
  EXPECT_TRUE(record.is_main);
  EXPECT_EQ(record.width, 0);
  EXPECT_EQ(record.height, 0);
  EXPECT_EQ(record.origin_x, 0);
  EXPECT_EQ(record.origin_y, 0);
  EXPECT_EQ(record.scale_factor, 0);
  EXPECT_EQ(record.name, "Display");
  EXPECT_TRUE(DisplayRecords().empty());
}

}  // namespace
}  // namespace deskhand
