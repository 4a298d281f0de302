// The keyboard of the X server: which key gives what, and typing.
// Thread: whoever has a session on the input channel.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <xkbcommon/xkbcommon.h>

#include "platform/x11/event_barrier.h"
#include "platform/x11/input_device.h"
#include "platform/x11/live_keymap.h"
#include "platform/x11/session.h"
#include "platform/x11/text_typing.h"

namespace deskhand::platform {

class Keyboard {
 public:
  /// Null when the server does not tell of its keyboard.
  static std::unique_ptr<Keyboard> Start(const Session& session);

  /// An event of the server.
  void Handle(const xcb_generic_event_t& event) { keymap_->Handle(event); }
  /// A message that another client sent.
  void HandleMessage(const xcb_client_message_event_t& message) {
    typing_->Handle(message);
    barrier_.Handle(message);
  }

  /// The key for a virtual key code (a position on the ANSI keyboard): the one that has the key's
  /// symbol in the active layout, else that in its place. None when the keyboard has neither.
  std::optional<uint8_t> KeycodeFor(uint16_t virtual_key_code) const;

  /// A key that gives this symbol without modifiers in the active layout.
  std::optional<uint8_t> KeycodeOfSymbol(xkb_keysym_t symbol) const;

  /// Text is typed between BeginText() and EndText(), in runs; see TextTyping.
  void BeginText(const Session& session, std::u16string_view text) {
    typing_->Begin(session, text);
  }
  void TypeText(const Session& session, InputDevice& device, std::u16string_view run) {
    typing_->Type(session, device, run);
  }
  void EndText(const Session& session, InputDevice& device) { typing_->End(session, device); }

  /// Waits for programs to have got to what was posted; see EventBarrier.
  void WaitForPrograms(const Session& session) { barrier_.Wait(session); }

 private:
  Keyboard(std::unique_ptr<LiveKeymap> keymap, std::unique_ptr<TextTyping> typing,
           const PingAtoms& atoms);

  const std::unique_ptr<LiveKeymap> keymap_;
  const std::unique_ptr<TextTyping> typing_;
  EventBarrier barrier_;
};

}  // namespace deskhand::platform
