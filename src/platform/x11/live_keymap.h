// The server's keyboard as it is now, and the keys in it that are lent to characters.
// Thread: whoever has a session on the input channel.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/x11/keymap.h"
#include "platform/x11/lent_keys.h"
#include "platform/x11/session.h"
#include "platform/x11/spare_keys.h"

namespace deskhand::platform {

class LiveKeymap {
 public:
  /// Null when the server has no XKB, or does not say.
  static std::unique_ptr<LiveKeymap> Start(const Session& session);

  /// Takes notice of an event of the connection.
  void Handle(const xcb_generic_event_t& event);

  /// Asks for the keyboard if it has changed. False when the server does not say; all else here is
  /// of use only after it was true.
  bool Refresh();

  /// The first key that gives `symbol` in the active layout without modifiers, that of `keycode` if
  /// it does. Never a lent one.
  std::optional<uint8_t> FindKey(xkb_keysym_t symbol, uint8_t keycode) const;

  /// How the active layout types `character`; null when it does not.
  const Stroke* FindStroke(char32_t character) const;

  /// A key that chooses the second or the third level, alone and with the other one.
  std::optional<uint8_t> shift_key() const { return shift_key_; }
  std::optional<uint8_t> third_level_key() const { return third_level_key_; }

  bool IsLent(uint8_t keycode) const { return spare_[keycode] && !keymap_.key(keycode).is_empty(); }

  SpareKeys& spare_keys() { return spare_keys_; }

  /// The modifiers that choose a level of a spare key.
  Modifiers LevelModifiers(uint8_t level) const;
  /// Those of every level of any key that is typed with.
  Modifiers AllLevelModifiers() const { return kShiftMask | third_level_; }

  /// Puts symbols on spare keys, all in one change, of which every program is told. False when the
  /// server did not do it. Where keyboards differ, each run of neighbouring keys is a change.
  bool Bind(const std::map<uint8_t, KeySymbols>& keys);

  xcb_atom_t lent_keys_property() const { return property_; }

 private:
  LiveKeymap(const Session& session, uint8_t first_event, xcb_atom_t property);

  void ChooseOwnKeyboard();
  bool IsSpare(const Key& key, const KeySymbols* lent) const;
  void FindSpareKeys(const LentKeys& lent, const std::vector<Keymap>& devices);
  bool Write(uint8_t first, uint8_t last);
  std::optional<uint8_t> FindModifierKey(xkb_keysym_t symbol, uint8_t keycode,
                                         Modifiers other) const;

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const uint8_t first_event_;  // of XKB
  const xcb_atom_t property_;

  bool is_stale_ = true;
  bool has_other_group_ = false;
  // Requests of ours, whose changes are known already.
  uint32_t own_choice_ = 0;
  std::vector<uint32_t> own_changes_;

  Keymap keymap_;
  uint8_t group_ = 0;
  std::unordered_map<char32_t, Stroke> characters_;
  std::optional<uint8_t> shift_key_;
  std::optional<uint8_t> third_level_key_;
  Keycodes spare_;
  SpareKeys spare_keys_;
  uint8_t spare_type_ = 0;
  uint8_t spare_levels_ = 0;
  Modifiers third_level_ = 0;
};

}  // namespace deskhand::platform
