#include "input/mouse_sequences.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakePlatform;
using Lines = std::vector<std::string>;

class MouseSequencesTest : public testing::Test {
 protected:
  void SetUp() override { FakePlatform::Reset(); }
  static const Lines& input() { return FakePlatform::Get().input; }

  const MouseButtonInfo left_ = ParseMouseButton("left");
  const MouseButtonInfo right_ = ParseMouseButton("right");
  const MouseButtonInfo middle_ = ParseMouseButton("middle");
};

TEST_F(MouseSequencesTest, AClickMovesPressesWaitsAndReleases) {
  Click(left_, {10, 20}, 1, 0);
  EXPECT_EQ(input(), (Lines{"begin", "mouse 5 at 10,20 button 0", "mouse 1 at 10,20 button 0",
                            "pause 50000", "mouse 2 at 10,20 button 0", "end"}));
}

TEST_F(MouseSequencesTest, ADoubleClickCountsItsClicksFromTheSecond) {
  Click(right_, {10, 20}, 2, 0);
  EXPECT_EQ(input(),
            (Lines{"begin", "mouse 5 at 10,20 button 0", "mouse 3 at 10,20 button 1", "pause 50000",
                   "mouse 4 at 10,20 button 1", "pause 50000", "mouse 3 at 10,20 button 1, click 2",
                   "pause 50000", "mouse 4 at 10,20 button 1, click 2", "end"}));
}

TEST_F(MouseSequencesTest, TheModifiersOfAClickAreOnEveryPressAndReleaseAndAnnounced) {
  Click(left_, {1, 2}, 2, 0x120000);
  EXPECT_EQ(input(), (Lines{"begin, flags 0x120000", "mouse 5 at 1,2 button 0",
                            "mouse 1 at 1,2 button 0, flags 0x120000", "pause 50000",
                            "mouse 2 at 1,2 button 0, flags 0x120000", "pause 50000",
                            "mouse 1 at 1,2 button 0, click 2, flags 0x120000", "pause 50000",
                            "mouse 2 at 1,2 button 0, click 2, flags 0x120000", "end"}));
}

TEST_F(MouseSequencesTest, NoClicksLeaveTheMoveAndAnnounceNoModifiers) {
  for (const int32_t count : {0, -1, INT32_MIN}) {
    FakePlatform::Reset();
    Click(left_, {1, 2}, count, 0x20000);
    EXPECT_EQ(input(), (Lines{"begin", "mouse 5 at 1,2 button 0", "end"})) << count;
  }
}

TEST_F(MouseSequencesTest, AMoveIsOneEvent) {
  MovePointer({-5, 2.5});
  EXPECT_EQ(input(), (Lines{"begin", "mouse 5 at -5,2.5 button 0", "end"}));
}

TEST_F(MouseSequencesTest, APressAndAReleaseAreOneEventEach) {
  PressButton(middle_, {3, 4});
  ReleaseButton(right_, {5, 6});
  EXPECT_EQ(input(), (Lines{"begin", "mouse 25 at 3,4 button 2", "end", "begin",
                            "mouse 4 at 5,6 button 1", "end"}));
}

TEST_F(MouseSequencesTest, ADragTakesTenEvenSteps) {
  Drag({0, 0}, {100, 50}, right_);
  Lines expected{"begin", "mouse 5 at 0,0 button 0", "pause 50000", "mouse 3 at 0,0 button 1",
                 "pause 50000"};
  for (int step = 1; step <= 10; ++step) {
    expected.push_back("mouse 7 at " + std::to_string(step * 10) + "," + std::to_string(step * 5) +
                       " button 1");
    expected.push_back("pause 10000");
  }
  expected.insert(expected.end(), {"pause 50000", "mouse 4 at 100,50 button 1", "end"});
  EXPECT_EQ(input(), expected);
}

TEST_F(MouseSequencesTest, ADragToItsStartPostsThirteenEventsThere) {
  Drag({7, 8}, {7, 8}, left_);
  const auto& events = FakePlatform::Get().mouse_events;
  ASSERT_EQ(events.size(), 13u);
  for (const auto& event : events) {
    EXPECT_EQ(event.position.x, 7);
    EXPECT_EQ(event.position.y, 8);
  }
}

// The points below were worked out in exact arithmetic and rounded once. Eight of the nine inner
// ones differ when the product is rounded by itself, and the last is not the end.
TEST_F(MouseSequencesTest, ThePointsOfADragAreRoundedOnce) {
  constexpr double kStart = 518.6;
  constexpr double kEnd = -1969.43;
  constexpr double kPoints[] = {
      0x1.0dcc083126e97p+8,   0x1.4fe76c8b4394bp+4,  -0x1.c79e353f7ced9p+7,  -0x1.dc9cac0831271p+8,
      -0x1.6ab51eb851eb9p+9,  -0x1.e71be76c8b43ap+9, -0x1.31c15810624ddp+10, -0x1.6ff4bc6a7ef9fp+10,
      -0x1.ae2820c49ba5fp+10, -0x1.ec5b851eb8520p+10};
  ASSERT_NE(kPoints[9], kEnd);
  Drag({kStart, 0}, {kEnd, 0}, left_);
  Drag({0, kStart}, {0, kEnd}, left_);
  const auto& events = FakePlatform::Get().mouse_events;
  ASSERT_EQ(events.size(), 26u);
  for (int step = 1; step <= 10; ++step) {
    EXPECT_EQ(events[1 + step].position.x, kPoints[step - 1]) << step;
    EXPECT_EQ(events[1 + step].position.y, 0) << step;
    EXPECT_EQ(events[14 + step].position.y, kPoints[step - 1]) << step;
  }
  EXPECT_EQ(events[12].position.x, kEnd);
  EXPECT_EQ(events[25].position.y, kEnd);
}

TEST_F(MouseSequencesTest, ADragTakesNumbersThatAreNotFinite) {
  Drag({0, INFINITY}, {NAN, 1}, left_);
  const auto& events = FakePlatform::Get().mouse_events;
  ASSERT_EQ(events.size(), 13u);
  EXPECT_TRUE(std::isnan(events[5].position.x));
  EXPECT_TRUE(std::isnan(events[5].position.y));  // infinity and back
  EXPECT_EQ(events[12].position.y, 1);
}

TEST_F(MouseSequencesTest, TheWheelTurnsWhereThePointerIs) {
  TurnWheel(0, -3, std::nullopt);
  EXPECT_EQ(input(), (Lines{"begin", "wheel -3,0", "end"}));
}

TEST_F(MouseSequencesTest, TheWheelTurnsAtAPlaceAfterAMoveAndAPause) {
  TurnWheel(2, 0, Point{100, 200});
  EXPECT_EQ(input(),
            (Lines{"begin", "mouse 5 at 100,200 button 0", "pause 10000", "wheel 0,2", "end"}));
}

TEST_F(MouseSequencesTest, LargeTurnsAreNotSplit) {
  TurnWheel(INT32_MIN, INT32_MAX, std::nullopt);
  EXPECT_EQ(input(), (Lines{"begin", "wheel 2147483647,-2147483648", "end"}));
}

}  // namespace
}  // namespace deskhand
