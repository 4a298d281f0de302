#include "platform/x11/input_device.h"

#include <xcb/xtest.h>

namespace deskhand::platform {
namespace {

// Core X protocol: the event that a request of XTEST fakes.
constexpr uint8_t kAbsolute = 0;

}  // namespace

void InputDevice::Key(uint8_t keycode, bool is_down) {
  held_keys_[keycode] = is_down;
  xcb_test_fake_input(connection_, is_down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode,
                      XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
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
