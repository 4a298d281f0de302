#include "platform/x11/input_device.h"

#include <xcb/xtest.h>

namespace deskhand::platform {
namespace {

// Core X protocol: the event that a request of XTEST fakes.
constexpr uint8_t kAbsolute = 0;

void FakeKey(xcb_connection_t* connection, uint8_t keycode, bool is_down) {
  xcb_test_fake_input(connection, is_down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode,
                      XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

}  // namespace

void InputDevice::Key(uint8_t keycode, bool is_down) {
  // The user's letting go of a key that was given back is one on his keyboard alone. On the one
  // that we play the key stays down, and the server would not hear of it being pressed again.
  if (is_down && given_back_[keycode]) FakeKey(connection_, keycode, false);
  given_back_[keycode] = false;
  held_keys_[keycode] = is_down;
  FakeKey(connection_, keycode, is_down);
}

void InputDevice::GiveBack(uint8_t keycode) {
  given_back_[keycode] = true;
  FakeKey(connection_, keycode, true);
}

void InputDevice::Button(uint8_t number, bool is_down) {
  held_buttons_[number] = is_down;
  xcb_test_fake_input(connection_, is_down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number,
                      XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void InputDevice::MoveTo(int16_t x, int16_t y) {
  xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, kAbsolute, XCB_CURRENT_TIME, XCB_NONE, x, y,
                      0);
}

}  // namespace deskhand::platform
