// The keyboard of the X server: which key gives what, and typing.
// Thread: whoever has a session on the input channel.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <xkbcommon/xkbcommon.h>

#include "platform/x11/input_device.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

class Keyboard {
 public:
  /// Null when the server does not tell of its keyboard.
  static std::unique_ptr<Keyboard> Start(const Session& session);
  ~Keyboard();

  void Handle(const xcb_generic_event_t& event);

  /// The key for a virtual key code (a position on the ANSI keyboard): the one that has the key's
  /// symbol in the active layout, else that in its place. None when the keyboard has neither.
  std::optional<uint8_t> KeycodeFor(uint16_t virtual_key_code) const;

  /// A key that gives this symbol.
  std::optional<uint8_t> KeycodeOfSymbol(xkb_keysym_t symbol) const;

 private:
  Keyboard();
};

}  // namespace deskhand::platform
