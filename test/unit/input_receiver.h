// A window that notes what input it gets, on a connection of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace deskhand {

/// One event as the X protocol tells it.
struct ReceivedEvent {
  uint8_t type = 0;    // XCB_KEY_PRESS and so on
  uint8_t detail = 0;  // keycode or button
  uint16_t state = 0;  // modifiers and buttons just before
  int16_t x = 0, y = 0;
  bool operator==(const ReceivedEvent&) const = default;
};

std::string ToText(const std::vector<ReceivedEvent>& events);

/// Covers the whole screen and has the keyboard's focus.
class InputReceiver {
 public:
  InputReceiver();
  ~InputReceiver();
  InputReceiver(const InputReceiver&) = delete;
  InputReceiver& operator=(const InputReceiver&) = delete;

  /// What has come since the last call, in order: all that was posted before this call.
  std::vector<ReceivedEvent> Take();

  /// The same without movements.
  std::vector<ReceivedEvent> TakePresses();

  /// A key on a real keyboard, as the user presses it.
  void PressPhysically(uint8_t keycode, bool is_down);

  uint8_t real_keyboard() const { return real_keyboard_; }

  /// Whether the server has the key down.
  bool IsDown(uint8_t keycode);

  /// Locks exactly these modifiers.
  void Lock(uint8_t modifiers);
  uint8_t Locked();

  /// The first key with this symbol; 0 when there is none.
  uint8_t KeycodeOf(xcb_keysym_t symbol);

  xcb_connection_t* connection() const { return connection_; }
  const xcb_screen_t& screen() const { return *screen_; }

 private:
  void Settle();

  xcb_connection_t* const connection_;
  const xcb_screen_t* screen_ = nullptr;
  uint8_t real_keyboard_ = 0;
};

}  // namespace deskhand
