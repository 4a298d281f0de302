// The server's keyboard: which key gives what on which level, as XKB has it.
// A group is a layout. A level is chosen by the modifiers that are down, as the key's type says.
// Pure but for the questions; one thread.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <xkbcommon/xkbcommon.h>

#include "platform/x11/xkb_protocol.h"

namespace deskhand::platform {

using Keycodes = std::bitset<256>;

/// A set of real modifiers, as the core protocol numbers them.
using Modifiers = uint8_t;
constexpr Modifiers kShiftMask = 0x01;

struct KeyType {
  Modifiers mask = 0;  // those that matter
  uint8_t level_count = 0;
  std::vector<std::pair<Modifiers, uint8_t>> levels;  // where it is not the first
};

struct Key {
  std::array<uint8_t, 4> types = {};  // of each group
  uint8_t group_info = 0;             // how many groups, and what becomes of a number beyond
  uint8_t width = 0;                  // levels for which there is room in each group
  std::vector<xkb_keysym_t> symbols = {};

  bool operator==(const Key&) const = default;
  bool is_empty() const;
};

/// A key press that types something.
struct Stroke {
  uint8_t keycode;
  Modifiers modifiers;  // Shift and that of the third level
};

/// The type of keys whose level Shift and one other modifier choose; both give the fourth.
struct FourLevels {
  uint8_t type;
  Modifiers third_level;
};

class Keymap {
 public:
  /// None when the reply, which must have the types and symbols, is not well formed.
  static std::optional<Keymap> Parse(const xcb_xkb_get_map_reply_t& reply);

  uint8_t min_keycode() const { return min_keycode_; }
  uint8_t max_keycode() const { return max_keycode_; }
  const Key& key(uint8_t keycode) const { return keys_[keycode]; }
  void SetKey(uint8_t keycode, Key key) { keys_[keycode] = std::move(key); }

  /// None when the keymap has no such type.
  std::optional<FourLevels> four_levels() const;

  /// What a key gives while `modifiers` are down; XKB_KEY_NoSymbol when nothing.
  xkb_keysym_t Symbol(uint8_t keycode, uint8_t group, Modifiers modifiers) const;

  /// Whether a key gives `symbol` on any level.
  bool Gives(uint8_t keycode, uint8_t group, xkb_keysym_t symbol) const;

  /// The first key that gives `symbol` without modifiers.
  std::optional<uint8_t> FindKey(xkb_keysym_t symbol, uint8_t group, const Keycodes& except) const;

  /// All that can be typed by one key with Shift, `third_level`, both or neither. Of several ways
  /// the most usual one: keys of the main block, few modifiers.
  std::unordered_map<char32_t, Stroke> Characters(uint8_t group, Modifiers third_level,
                                                  const Keycodes& except) const;

 private:
  uint8_t min_keycode_ = 8;
  uint8_t max_keycode_ = 255;
  std::vector<KeyType> types_;
  std::array<Key, 256> keys_;
};

/// Asks for what Keymap::Parse() needs, of one keyboard.
xcb_xkb_get_map_cookie_t AskForKeymap(xcb_connection_t* connection, xcb_xkb_device_spec_t keyboard);

/// Asks the server for the core keyboard's. None when it does not say.
std::optional<Keymap> ReadKeymap(xcb_connection_t* connection);

/// Whether a key of the keypad gives `symbol`. Those of its numbers need Num Lock.
bool IsOfKeypad(xkb_keysym_t symbol);

/// The symbol that types `character`, which is none of the control characters; XKB_KEY_NoSymbol
/// when there is none.
xkb_keysym_t SymbolOf(char32_t character);

}  // namespace deskhand::platform
