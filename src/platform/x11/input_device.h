// Fake input, and what of it is held down.
// Space: pixels of the root window. Thread: whoever has a session on the input channel.
#pragma once

#include <cstdint>

#include "platform/x11/held_input.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// The keyboard and mouse that this process plays, through XTEST. Nothing here waits for the
/// server.
class InputDevice {
 public:
  InputDevice(xcb_connection_t* connection, HeldInput& held)
      : connection_(connection), held_(held) {}

  void Key(uint8_t keycode, bool is_down);
  /// Presses a key that another program held before we came: it is not ours.
  void GiveBack(uint8_t keycode);
  void Button(uint8_t number, bool is_down);

  /// The server keeps the pointer on its screen.
  void MoveTo(int16_t x, int16_t y);

  /// How many events were posted.
  uint64_t count() const { return count_; }

  /// Lets go of all keys, and of the buttons whose release is overdue.
  void LetGo();

  /// The server has all that was posted, or is out of reach and may have got less.
  void Settle(bool is_posted);

 private:
  void Fake(uint8_t type, uint8_t detail, int16_t x = 0, int16_t y = 0);

  xcb_connection_t* const connection_;
  uint64_t count_ = 0;
  HeldInput& held_;
  // Not yet known to be at the server.
  std::bitset<256> released_keys_;
  std::bitset<256> released_buttons_;
};

}  // namespace deskhand::platform
