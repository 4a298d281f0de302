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
  if (is_down) held_.keys.set(keycode);
  released_keys_[keycode] = !is_down;
  Fake(is_down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode);
}

void InputDevice::GiveBack(uint8_t keycode) { Fake(XCB_KEY_PRESS, keycode); }

void InputDevice::Button(uint8_t number, bool is_down) {
  if (is_down) held_.buttons.set(number);
  released_buttons_[number] = !is_down;
  Fake(is_down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number);
}

void InputDevice::LetGo() {
  for (size_t keycode = 0; keycode < held_.keys.size(); ++keycode) {
    if (held_.keys[keycode]) Key(static_cast<uint8_t>(keycode), false);
  }
  for (size_t number = 0; number < held_.overdue_buttons.size(); ++number) {
    if (held_.overdue_buttons[number]) Button(static_cast<uint8_t>(number), false);
  }
}

void InputDevice::Settle(bool is_posted) {
  if (is_posted) {
    held_.keys &= ~released_keys_;
    held_.buttons &= ~released_buttons_;
    held_.overdue_buttons &= held_.buttons;
  } else {
    held_.overdue_buttons |= released_buttons_;
  }
  released_keys_.reset();
  released_buttons_.reset();
}

void InputDevice::MoveTo(int16_t x, int16_t y) { Fake(XCB_MOTION_NOTIFY, kAbsolute, x, y); }

}  // namespace deskhand::platform
