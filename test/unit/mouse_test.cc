// The mouse as programs get it from the server. Each test has a server of its own.
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/randr.h>

#include "platform/input.h"
#include "platform/x11/reply.h"
#include "unit/input_receiver.h"
#include "unit/private_xvfb.h"

namespace deskhand {
namespace {

using platform::InputScope;
using platform::MouseButton;
using platform::MouseEventType;

constexpr uint16_t kLeftHeld = XCB_BUTTON_MASK_1;

class Mouse : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.is_running());
    receiver_ = std::make_unique<InputReceiver>();
  }

  static void Post(MouseEventType type, Point point, MouseButton button = MouseButton::kLeft) {
    const InputScope scope;
    platform::PostMouseEvent({.type = type, .position = point, .button = button});
  }

  /// Where the pointer is after a move to `point`.
  static Point After(Point point) {
    Post(MouseEventType::kMoved, point);
    return platform::CursorPosition();
  }

  void ExpectPresses(const std::vector<ReceivedEvent>& expected) {
    EXPECT_EQ(ToText(receiver_->TakePresses()), ToText(expected));
  }

  /// Two monitors side by side, the right one primary.
  void SplitScreen() {
    ASSERT_EQ(std::system("xrandr --setmonitor left 640/169x720/190+0+0 screen &&"
                          "xrandr --setmonitor '*right' 640/169x720/190+640+0 none"),
              0);
    receiver_->Take();
  }

  const PrivateXvfb server_;
  std::unique_ptr<InputReceiver> receiver_;
};

void ExpectNear(Point point, double x, double y) {
  EXPECT_EQ(point.x, x);
  EXPECT_EQ(point.y, y);
}

TEST_F(Mouse, MovesToTheNearestPixel) {
  ExpectNear(After({100, 200}), 100, 200);
  ExpectNear(After({100.4, 200.6}), 100, 201);
  ExpectNear(After({0.5, 0.49}), 1, 0);
}

TEST_F(Mouse, StopsAtTheEdgesOfTheScreen) {
  const double infinity = std::numeric_limits<double>::infinity();
  ExpectNear(After({-50, -1e300}), 0, 0);
  ExpectNear(After({1e300, infinity}), 1279, 719);
  ExpectNear(After({70000, 65536 + 5}), 1279, 719);
}

TEST_F(Mouse, StaysWhereAPointIsNoNumber) {
  After({30, 40});
  ExpectNear(After({std::nan(""), 5}), 30, 40);
  ExpectNear(After({5, std::nan("")}), 30, 40);
}

TEST_F(Mouse, CountsFromThePrimaryMonitor) {
  SplitScreen();
  ExpectNear(After({10, 20}), 10, 20);
  Post(MouseEventType::kMoved, {-640, 7});
  receiver_->Take();
  Post(MouseEventType::kLeftDown, {-30, 40});
  Post(MouseEventType::kLeftUp, {-30, 40});
  ExpectPresses({{XCB_BUTTON_PRESS, 1, 0, 610, 40}, {XCB_BUTTON_RELEASE, 1, kLeftHeld, 610, 40}});
}

TEST_F(Mouse, PressesEachButtonWhereItIsTold) {
  Post(MouseEventType::kLeftDown, {10, 11});
  Post(MouseEventType::kLeftUp, {12, 13});
  Post(MouseEventType::kRightDown, {20, 21}, MouseButton::kRight);
  Post(MouseEventType::kRightUp, {20, 21}, MouseButton::kRight);
  Post(MouseEventType::kOtherDown, {30, 31}, MouseButton::kCenter);
  Post(MouseEventType::kOtherUp, {30, 31}, MouseButton::kCenter);
  ExpectPresses({{XCB_BUTTON_PRESS, 1, 0, 10, 11},
                 {XCB_BUTTON_RELEASE, 1, kLeftHeld, 12, 13},
                 {XCB_BUTTON_PRESS, 3, 0, 20, 21},
                 {XCB_BUTTON_RELEASE, 3, XCB_BUTTON_MASK_3, 20, 21},
                 {XCB_BUTTON_PRESS, 2, 0, 30, 31},
                 {XCB_BUTTON_RELEASE, 2, XCB_BUTTON_MASK_2, 30, 31}});
}

TEST_F(Mouse, DragsWithTheButtonDown) {
  Post(MouseEventType::kLeftDown, {10, 10});
  receiver_->Take();
  Post(MouseEventType::kLeftDragged, {50, 60});
  Post(MouseEventType::kLeftUp, {50, 60});
  const std::vector<ReceivedEvent> events = receiver_->Take();
  ASSERT_GE(events.size(), 2u);
  EXPECT_EQ(events.front(), (ReceivedEvent{XCB_MOTION_NOTIFY, 0, kLeftHeld, 50, 60}));
  EXPECT_EQ(events.back(), (ReceivedEvent{XCB_BUTTON_RELEASE, 1, kLeftHeld, 50, 60}));
}

TEST_F(Mouse, TurnsTheWheelOneClickForEachLine) {
  After({100, 100});
  receiver_->Take();
  struct Case {
    int32_t vertical, horizontal;
    uint8_t button;
  };
  for (const auto& [vertical, horizontal, button] :
       {Case{1, 0, 4}, Case{-1, 0, 5}, Case{0, 1, 6}, Case{0, -1, 7}, Case{-3, 0, 5},
        Case{1000, 0, 4}}) {
    {
      const InputScope scope;
      platform::PostWheelEvent(vertical, horizontal);
    }
    const auto events = receiver_->TakePresses();
    EXPECT_EQ(events.size(), 2u * (std::abs(vertical) + std::abs(horizontal)));
    for (size_t index = 0; index < events.size(); ++index) {
      const bool is_press = index % 2 == 0;
      ASSERT_EQ(events[index].detail, button);
      ASSERT_EQ(events[index].type, is_press ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE);
    }
  }
}

TEST_F(Mouse, TurnsTheWheelByAHundredThousandLinesAtMost) {
  {
    const InputScope scope;
    platform::PostWheelEvent(std::numeric_limits<int32_t>::min(), 0);
  }
  const auto events = receiver_->TakePresses();
  EXPECT_EQ(events.size(), 200'000u);
  EXPECT_EQ(events.back(), (ReceivedEvent{XCB_BUTTON_RELEASE, 5, XCB_BUTTON_MASK_5, events.back().x,
                                          events.back().y}));
}

TEST_F(Mouse, TurnsBothWheelsVerticalFirst) {
  {
    const InputScope scope;
    platform::PostWheelEvent(2, -1);
  }
  std::vector<int> buttons;
  for (const auto& event : receiver_->TakePresses()) buttons.push_back(event.detail);
  EXPECT_EQ(buttons, (std::vector<int>{4, 4, 4, 4, 7, 7}));
}

TEST_F(Mouse, TurnsTheWheelByNothingWithoutAnEvent) {
  {
    const InputScope scope;
    platform::PostWheelEvent(0, 0);
  }
  EXPECT_EQ(ToText(receiver_->Take()), "");
}

TEST_F(Mouse, PostsNothingToAServerThatIsGone) {
  PrivateXvfb gone;
  ASSERT_TRUE(gone.is_running());
  gone.Kill();
  Post(MouseEventType::kMoved, {5, 5});
  EXPECT_EQ(ToText(receiver_->Take()), "");
}

}  // namespace
}  // namespace deskhand
