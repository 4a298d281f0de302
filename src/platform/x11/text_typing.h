// Typing any text into the program that has the keyboard's focus.
// Characters of the active layout are typed with their own keys, all others with spare keys, which
// they are put on first. A character is typed as itself or not at all.
// Thread: whoever has a session on the input channel.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/input_device.h"
#include "platform/x11/key_repeat.h"
#include "platform/x11/live_keymap.h"
#include "platform/x11/pending_uses.h"
#include "platform/x11/receiver.h"
#include "platform/x11/session.h"
#include "platform/x11/surrogates.h"
#include "platform/x11/typing_turn.h"

namespace deskhand::platform {

/// How long a call waits for another process to finish its text, or for the receiver to get to the
/// keys that it was sent. What is not typed by then is left out. The session's deadline moves on
/// meanwhile, as long as the server answers.
constexpr std::chrono::seconds kLongestTypingWait{10};

class TextTyping {
 public:
  /// Null when the server does not answer. `keymap` must outlive it.
  static std::unique_ptr<TextTyping> Start(const Session& session, LiveKeymap& keymap,
                                           const PingAtoms& atoms);

  /// Announces the text that the following runs are parts of, with Tabs and line breaks between
  /// them. It must stay as it is until End().
  void Begin(const Session& session, std::u16string_view text);

  /// Types the next part. No modifiers may be down, nor Caps Lock on. Of control characters those
  /// that have keys are typed, BackSpace, Escape and Delete; the others are left out.
  void Type(const Session& session, InputDevice& device, std::u16string_view run);

  void End(const Session& session, InputDevice& device);

  /// A message of another client, which may be the answer to a ping.
  void Handle(const xcb_client_message_event_t& message);

 private:
  TextTyping(const Session& session, LiveKeymap& keymap, std::unique_ptr<KeyRepeat> key_repeat,
             TypingTurn turn, const PingAtoms& atoms, xcb_atom_t former_locks_property);

  bool BeginWithSpareKeys(const Session& session);
  void AdoptUses(const Session& session, const LentKeys& lent);

  void TypeAll(const Session& session, InputDevice& device, const std::u32string& characters);
  bool TypeOne(char32_t character, InputDevice& device);
  bool Prepare(const Session& session, std::u32string_view characters);
  std::vector<xkb_keysym_t> Wanted(std::u32string_view characters) const;

  void HoldModifiers(InputDevice& device, Modifiers modifiers);
  void LockModifiers(Modifiers modifiers);
  std::optional<Modifiers> ReadFormerLocks() const;
  bool EndStretch(const Session& session, InputDevice& device);

  void FindReceiverNow(const Session& session, xcb_window_t focus);
  void Publish();
  void SendPings(const Session& session);
  bool WaitUntilOver(const Session& session, Use use);

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const PingAtoms atoms_;
  const xcb_atom_t former_locks_property_;
  LiveKeymap& keymap_;
  const std::unique_ptr<KeyRepeat> key_repeat_;
  TypingTurn turn_;

  bool is_open_ = false;   // between Begin() and End()
  bool can_type_ = false;  // all has gone well since Begin()
  bool is_listening_ = false;
  std::u16string_view ahead_;  // of the announced text
  RunReader reader_;

  Modifiers held_ = 0;  // by keys of ours
  Modifiers locked_ = 0, former_locks_ = 0;

  Receiver receiver_;
  xcb_window_t focus_ = XCB_NONE;
  PendingUses pending_;
  Use use_ = 1;                  // of the present stretch
  bool is_use_pending_ = false;  // spare keys were pressed in it
  uint32_t next_ping_;
  LentKeys published_;
};

}  // namespace deskhand::platform
