// Modifiers around clicks and keys, as programs get them. Each test has a server of its own.
#include "platform/x11/modifiers.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/input.h"
#include "unit/input_receiver.h"
#include "unit/private_xvfb.h"
#include "unit/text_receiver.h"

namespace deskhand {
namespace {

using platform::InputScope;
using platform::MouseEventType;

// Virtual key codes.
constexpr uint16_t kA = 0, kShiftKey = 56, kCapsLockKey = 57, kNumpad1 = 83;

constexpr uint16_t kShift = XCB_MOD_MASK_SHIFT, kControl = XCB_MOD_MASK_CONTROL,
                   kAlt = XCB_MOD_MASK_1, kSuper = XCB_MOD_MASK_4, kCaps = XCB_MOD_MASK_LOCK,
                   kNum = XCB_MOD_MASK_2;

class Modifiers : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.is_running());
    receiver_ = std::make_unique<InputReceiver>();
    shift_ = receiver_->KeycodeOf(XKB_KEY_Shift_L);
    control_ = receiver_->KeycodeOf(XKB_KEY_Control_L);
    alt_ = receiver_->KeycodeOf(XKB_KEY_Alt_L);
    super_ = receiver_->KeycodeOf(XKB_KEY_Super_L);
    a_ = receiver_->KeycodeOf(XKB_KEY_a);
  }

  static void Press(MouseEventType type, uint64_t flags) {
    platform::PostMouseEvent({.type = type, .position = {5, 5}, .flags = flags});
  }

  static void Click(uint64_t flags) {
    const InputScope scope(flags);
    Press(MouseEventType::kLeftDown, flags);
    Press(MouseEventType::kLeftUp, flags);
  }

  static void Key(uint16_t key_code, bool is_down, uint64_t flags = 0) {
    platform::PostKeyEvent({.key_code = key_code, .is_down = is_down, .flags = flags});
  }

  static void Tap(uint16_t key_code, uint64_t flags = 0) {
    const InputScope scope(flags);
    Key(key_code, true, flags);
    Key(key_code, false, flags);
  }

  /// One line for each event but movements: what went down or up, and the modifiers before it.
  std::string Log() {
    std::string log;
    for (const ReceivedEvent& event : receiver_->TakePresses()) {
      const bool is_down = event.type == XCB_KEY_PRESS || event.type == XCB_BUTTON_PRESS;
      const bool is_key = event.type == XCB_KEY_PRESS || event.type == XCB_KEY_RELEASE;
      log += is_down ? "+" : "-";
      log += is_key ? NameOf(event.detail) : "button";
      for (const auto& [mask, name] : {std::pair{kShift, " S"},
                                       {kControl, " C"},
                                       {kAlt, " A"},
                                       {kSuper, " W"},
                                       {kCaps, " caps"},
                                       {kNum, " num"}}) {
        if ((event.state & mask) != 0) log += name;
      }
      log += '\n';
    }
    return log;
  }

  std::string NameOf(uint8_t keycode) const {
    if (keycode == shift_) return "shift";
    if (keycode == control_) return "control";
    if (keycode == alt_) return "alt";
    if (keycode == super_) return "super";
    if (keycode == a_) return "a";
    return std::to_string(keycode);
  }

  const PrivateXvfb server_;
  std::unique_ptr<InputReceiver> receiver_;
  uint8_t shift_ = 0, control_ = 0, alt_ = 0, super_ = 0, a_ = 0;
};

TEST_F(Modifiers, GoDownOnceBeforeAClickAndUpOnceAfterIt) {
  Click(platform::modifier::kShift | platform::modifier::kCommand);
  EXPECT_EQ(Log(), "+shift\n+super S\n+button S W\n-button S W\n-super S W\n-shift S\n");
}

TEST_F(Modifiers, OfAllNamesAreTheKeysThatTheyMean) {
  Click(platform::modifier::kControl | platform::modifier::kOption);
  EXPECT_EQ(Log(), "+control\n+alt C\n+button C A\n-button C A\n-alt C A\n-control C\n");
  Click(platform::modifier::kFunction);
  EXPECT_EQ(Log(), "+button\n-button\n");
}

TEST_F(Modifiers, StayDownBetweenTheClicksOfOneCall) {
  {
    const InputScope scope(platform::modifier::kShift);
    for (int click = 0; click < 2; ++click) {
      Press(MouseEventType::kLeftDown, platform::modifier::kShift);
      Press(MouseEventType::kLeftUp, platform::modifier::kShift);
    }
  }
  EXPECT_EQ(Log(), "+shift\n+button S\n-button S\n+button S\n-button S\n-shift S\n");
}

TEST_F(Modifiers, OfAChordAreDownAroundItsKey) {
  Tap(kA, platform::modifier::kControl | platform::modifier::kShift);
  EXPECT_EQ(Log(), "+control\n+shift C\n+a S C\n-a S C\n-shift S C\n-control C\n");
}

TEST_F(Modifiers, ThatAreAChordsKeyArePressedOnce) {
  Tap(kShiftKey, platform::modifier::kShift | platform::modifier::kControl);
  EXPECT_EQ(Log(), "+control\n+shift C\n-shift S C\n-control C\n");
}

TEST_F(Modifiers, ThatTheUserHoldsAreNotSeenAndAreHeldAgainAfterwards) {
  receiver_->PressPhysically(control_, true);
  Log();
  Click(platform::modifier::kShift);
  EXPECT_EQ(Log(), "-control C\n+shift\n+button S\n-button S\n-shift S\n+control\n");
  EXPECT_TRUE(receiver_->IsDown(control_));
  receiver_->PressPhysically(control_, false);
  EXPECT_FALSE(receiver_->IsDown(control_));
}

TEST_F(Modifiers, ThatTheUserHoldsAreGivenBackWhenTheProgramHasGotToTheKey) {
  TextReceiver program;
  receiver_->PressPhysically(shift_, true);
  const auto tap = [] {
    const auto start = std::chrono::steady_clock::now();
    Tap(kA);
    return std::chrono::steady_clock::now() - start;
  };
  EXPECT_LT(tap(), std::chrono::milliseconds(900));
  program.Stop();
  EXPECT_GE(tap(), std::chrono::seconds(1)) << "the longest that one is waited for";
  EXPECT_TRUE(receiver_->IsDown(shift_));
  program.Continue();
  EXPECT_EQ(program.TextLike(U"aa"), U"aa");
}

TEST_F(Modifiers, ThatTheUserHoldsAndTheChordWantsAreLeftAlone) {
  receiver_->PressPhysically(control_, true);
  Log();
  Tap(kA, platform::modifier::kControl);
  EXPECT_EQ(Log(), "+a C\n-a C\n");
  EXPECT_TRUE(receiver_->IsDown(control_));
}

TEST_F(Modifiers, ThatTheUserLetsGoMeanwhileStayUp) {
  receiver_->PressPhysically(control_, true);
  {
    const InputScope scope;
    Key(kA, true);
    receiver_->PressPhysically(control_, false);
    Key(kA, false);
  }
  EXPECT_FALSE(receiver_->IsDown(control_));
}

TEST_F(Modifiers, WorkAgainAfterTheUserLetGoOfOneThatWasGivenBack) {
  receiver_->PressPhysically(control_, true);
  Click(0);
  receiver_->PressPhysically(control_, false);
  Log();
  Click(platform::modifier::kControl);
  const std::string log = Log();
  EXPECT_NE(log.find("+button C\n-button C\n"), std::string::npos) << log;
  EXPECT_FALSE(receiver_->IsDown(control_));
}

TEST_F(Modifiers, ACapsLockIsOffForAKeyAndOnAgainAfterwards) {
  receiver_->Lock(kCaps);
  Tap(kA);
  EXPECT_EQ(Log(), "+a\n-a\n");
  EXPECT_EQ(receiver_->Locked(), kCaps);
}

TEST_F(Modifiers, ACapsLockIsLeftAloneByClicks) {
  receiver_->Lock(kCaps);
  Click(0);
  EXPECT_EQ(Log(), "+button caps\n-button caps\n");
  EXPECT_EQ(receiver_->Locked(), kCaps);
}

TEST_F(Modifiers, TheCapsLockKeySwitchesIt) {
  Tap(kCapsLockKey);
  EXPECT_EQ(receiver_->Locked(), kCaps);
  Tap(kCapsLockKey);
  EXPECT_EQ(receiver_->Locked(), 0);
}

TEST_F(Modifiers, TheKeypadGivesNumbers) {
  Tap(kNumpad1);
  const auto log = Log();
  EXPECT_NE(log.find(" num"), std::string::npos) << log;
  EXPECT_EQ(receiver_->Locked(), 0);
}

TEST_F(Modifiers, NothingIsHeldAtTheEnd) {
  Click(platform::modifier::kShift | platform::modifier::kControl | platform::modifier::kOption |
        platform::modifier::kCommand);
  for (int key = 8; key < 256; ++key) EXPECT_FALSE(receiver_->IsDown(key)) << key;
}

}  // namespace
}  // namespace deskhand
