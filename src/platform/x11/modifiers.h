// Modifier keys and locks around events that are to have chosen ones.
// Thread: whoever has a session on the input channel.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/x11/input_device.h"
#include "platform/x11/keyboard.h"
#include "platform/x11/session.h"
#include "platform/x11/xkb_protocol.h"

namespace deskhand::platform {

/// The keyboard's modifiers at one moment.
struct ModifierState {
  std::array<std::vector<uint8_t>, 8> keys_of;  // the keys of each modifier, lowest bit first
  std::array<uint8_t, 32> keys_down{};          // a bit for each keycode
  uint8_t locked = 0;                           // a bit for each modifier
  uint8_t latched = 0;

  bool IsDown(uint8_t keycode) const { return (keys_down[keycode / 8] >> (keycode % 8) & 1) != 0; }

  /// The modifiers that the key sets.
  uint8_t MaskOf(uint8_t keycode) const;

  /// The modifiers that have a key down.
  uint8_t Held() const;
};

/// Asks for the state at once, and takes the answer later, so that other questions go along.
class ModifierQuestion {
 public:
  explicit ModifierQuestion(xcb_connection_t* connection);
  ~ModifierQuestion();
  ModifierQuestion(const ModifierQuestion&) = delete;
  ModifierQuestion& operator=(const ModifierQuestion&) = delete;

  /// None when the server does not say. To be called once at most.
  std::optional<ModifierState> Take();

 private:
  xcb_connection_t* const connection_;
  const xcb_get_modifier_mapping_cookie_t mapping_;
  const xcb_query_keymap_cookie_t keymap_;
  const xcb_xkb_get_state_cookie_t state_;
  bool is_taken_ = false;
};

/// What the locks are to be meanwhile.
enum class Locks {
  kAsTheyAre,
  kOff,      // Caps Lock: a letter key gives the small one
  kNumbers,  // and the keypad gives its numbers
};

/// Sees to it that of all modifiers exactly the wanted ones are down. Those that the user holds are
/// released meanwhile, and pressed again afterwards unless he has let go of them.
class ModifierGuard {
 public:
  /// `flags` as in platform/input.h.
  ModifierGuard(const Session& session, InputDevice& device, const Keyboard& keyboard,
                const ModifierState& state, uint64_t flags, Locks locks);

  /// Puts everything back; only ever called with the connection that it began on.
  void End(const Session& session, InputDevice& device, Keyboard& keyboard);

 private:
  struct Released {
    uint8_t keycode = 0;
    bool is_real = false;  // else a program plays it, and nobody can tell when it lets go
  };

  void ReleaseAllBut(uint8_t wanted, const Session& session, InputDevice& device,
                     const Keyboard& keyboard, const ModifierState& state);
  void SetLocks(Locks locks, xcb_connection_t* connection, const Keyboard& keyboard,
                const ModifierState& state);

  std::vector<uint8_t> pressed_;  // in this order
  std::vector<Released> released_;
  uint8_t changed_locks_ = 0;  // a bit for each modifier
  uint8_t former_locks_ = 0;
};

}  // namespace deskhand::platform
