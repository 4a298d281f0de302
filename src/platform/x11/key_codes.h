// Virtual key codes as the X11 keyboard knows them. Pure; any thread.
#pragma once

#include <cstdint>

#include <xkbcommon/xkbcommon.h>

namespace deskhand::platform {

/// A key of the ANSI keyboard.
struct KeyPlace {
  uint16_t virtual_key_code;
  uint8_t keycode;      // of the key in the same place, by the numbers of evdev; 0: there is none
  xkb_keysym_t symbol;  // what it gives without modifiers in the layout that its name is from
};

/// Null when no key has this code. `fn` has one, and neither symbol nor place: no X keyboard tells
/// of that key.
const KeyPlace* FindKeyPlace(uint16_t virtual_key_code);

/// Whether a key of the table has its place there.
bool IsKeyPlace(uint8_t keycode);

}  // namespace deskhand::platform
