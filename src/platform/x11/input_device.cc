#include "platform/x11/input_device.h"

#include <xcb/xtest.h>

namespace deskhand::platform {
namespace {

// Core X protocol: the event that a request of XTEST fakes.
constexpr uint8_t kAbsolute = 0;

}  // namespace

void InputDevice::Fake(uint8_t type, uint8_t detail, int16_t x, int16_t y) {
  ++count_;
  xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, XCB_NONE, x, y, 0);
}

void InputDevice::Key(uint8_t keycode, bool is_down) {
  // The user's letting go of a key that was given back is one on his keyboard alone. On the one
  // that we play the key stays down, and the server would not hear of it being pressed again.
  if (is_down && given_back_[keycode]) Fake(XCB_KEY_RELEASE, keycode);
  given_back_[keycode] = false;
  held_keys_[keycode] = is_down;
  Fake(is_down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode);
}

void InputDevice::GiveBack(uint8_t keycode) {
  given_back_[keycode] = true;
  Fake(XCB_KEY_PRESS, keycode);
}

void InputDevice::Button(uint8_t number, bool is_down) {
  held_buttons_[number] = is_down;
  Fake(is_down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number);
}

void InputDevice::MoveTo(int16_t x, int16_t y) { Fake(XCB_MOTION_NOTIFY, kAbsolute, x, y); }

}  // namespace deskhand::platform
