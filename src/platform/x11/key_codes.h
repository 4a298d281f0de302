// Virtual key codes as the X11 keyboard knows them. Pure; any thread.
#pragma once

#include <cstdint>

#include <xkbcommon/xkbcommon.h>

namespace deskhand::platform {

/// Virtual key codes that are treated in a way of their own.
namespace virtual_key {
inline constexpr uint16_t kRightCommand = 54, kCommand = 55;
inline constexpr uint16_t kShift = 56, kRightShift = 60;
inline constexpr uint16_t kOption = 58, kRightOption = 61;
inline constexpr uint16_t kControl = 59, kRightControl = 62;
inline constexpr uint16_t kCapsLock = 57;
inline constexpr uint16_t kKeypadClear = 71;  // in the place of Num Lock
}  // namespace virtual_key

/// A key of the ANSI keyboard.
struct KeyPlace {
  uint16_t virtual_key_code;
  uint8_t keycode;      // of the key in the same place, by the numbers of evdev; 0: there is none
  xkb_keysym_t symbol;  // what it gives without modifiers in the layout that its name is from
};

/// Null when no key has this code. `fn` has one, and neither symbol nor place: no X keyboard tells
/// of that key.
const KeyPlace* FindKeyPlace(uint16_t virtual_key_code);

/// Whether this is a key of the keypad, but for Clear.
bool IsOnKeypad(uint16_t virtual_key_code);

/// Whether a key of the table has its place there.
bool IsKeyPlace(uint8_t keycode);

}  // namespace deskhand::platform
