#include "platform/x11/keymap.h"

#include <algorithm>
#include <cstring>
#include <tuple>

#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

constexpr uint16_t kTypesAndSymbols = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;

// XKB protocol, "Key symbol map": the fields of a key's group information.
constexpr uint8_t kGroupCount = 0x0f;
constexpr uint8_t kClampIntoRange = 0x40;
constexpr uint8_t kRedirectIntoRange = 0x80;

// Where the main block ends. Beyond are keys that type, too, such as parentheses of their own; few
// keyboards have them, and programs that look at the key rather than its symbol do not know them.
constexpr uint8_t kLastMainKey = 97;

/// Reads what the protocol lists one after the other. Once there is too little, all is zero.
class Bytes {
 public:
  Bytes(const uint8_t* begin, size_t size) : next_(begin), left_(size) {}

  template <class T>
  T Take() {
    T value{};
    if (left_ < sizeof(T)) {
      is_short_ = true;
      left_ = 0;
      return value;
    }
    std::memcpy(&value, next_, sizeof(T));
    next_ += sizeof(T);
    left_ -= sizeof(T);
    return value;
  }

  bool is_short() const { return is_short_; }

 private:
  const uint8_t* next_;
  size_t left_;
  bool is_short_ = false;
};

KeyType TakeType(Bytes* bytes) {
  const auto head = bytes->Take<xcb_xkb_key_type_t>();
  KeyType type{.mask = head.mods_mask, .level_count = head.numLevels, .levels = {}};
  for (int i = 0; i < head.nMapEntries; ++i) {
    const auto entry = bytes->Take<xcb_xkb_kt_map_entry_t>();
    // Others name modifiers that no key gives.
    if (entry.active) type.levels.emplace_back(entry.mods_mask, entry.level);
  }
  for (int i = 0; head.hasPreserve && i < head.nMapEntries; ++i) bytes->Take<xcb_xkb_mod_def_t>();
  return type;
}

Key TakeKey(Bytes* bytes) {
  const auto head = bytes->Take<xcb_xkb_key_sym_map_t>();
  Key key{.group_info = head.groupInfo, .width = head.width};
  std::copy_n(head.kt_index, key.types.size(), key.types.begin());
  for (int i = 0; i < head.nSyms; ++i) key.symbols.push_back(bytes->Take<xkb_keysym_t>());
  return key;
}

/// The group of the key that stands for group `number` of the keyboard.
uint8_t GroupOf(const Key& key, uint8_t number) {
  const uint8_t count = key.group_info & kGroupCount;
  if (number < count) return number;
  if (key.group_info & kRedirectIntoRange) {
    const uint8_t target = (key.group_info >> 4) & 3;
    return target < count ? target : 0;
  }
  return key.group_info & kClampIntoRange ? count - 1 : number % count;
}

uint8_t LevelOf(const KeyType& type, Modifiers modifiers) {
  const Modifiers relevant = modifiers & type.mask;
  for (const auto& [wanted, level] : type.levels) {
    if (wanted == relevant) return level;
  }
  return 0;
}

/// What a program takes the symbol for; 0 when for nothing that text is made of.
char32_t CharacterOf(xkb_keysym_t symbol) {
  // The same characters, but programs tell them apart, and most need Num Lock.
  if (IsOfKeypad(symbol)) return 0;
  const char32_t character = xkb_keysym_to_utf32(symbol);
  constexpr char32_t kKeys[] = {'\b', '\t', '\r', 0x1b, 0x7f};
  const bool is_key = std::find(std::begin(kKeys), std::end(kKeys), character) != std::end(kKeys);
  return character >= ' ' || is_key ? character : 0;
}

}  // namespace

bool Key::is_empty() const {
  return std::all_of(symbols.begin(), symbols.end(),
                     [](xkb_keysym_t symbol) { return symbol == XKB_KEY_NoSymbol; });
}

std::optional<Keymap> Keymap::Parse(const xcb_xkb_get_map_reply_t& reply) {
  // The reply's length counts what lies beyond its first 32 bytes, in units of 4.
  const size_t size = 32 + size_t{4} * reply.length;
  const size_t head = sizeof(reply);
  if (size < head || (reply.present & kTypesAndSymbols) != kTypesAndSymbols) return std::nullopt;
  if (reply.firstType != 0 || reply.firstKeySym + reply.nKeySyms > 256) return std::nullopt;
  Bytes bytes(reinterpret_cast<const uint8_t*>(&reply) + head, size - head);
  Keymap keymap;
  keymap.min_keycode_ = reply.minKeyCode;
  keymap.max_keycode_ = reply.maxKeyCode;
  for (int i = 0; i < reply.nTypes; ++i) keymap.types_.push_back(TakeType(&bytes));
  for (int i = 0; i < reply.nKeySyms; ++i) {
    Key key = TakeKey(&bytes);
    const size_t groups = key.group_info & kGroupCount;
    // What is not so cannot be asked about, nor be written back.
    if (groups > key.types.size() || key.symbols.size() != groups * key.width) return std::nullopt;
    keymap.keys_[reply.firstKeySym + i] = std::move(key);
  }
  if (bytes.is_short()) return std::nullopt;
  return keymap;
}

std::optional<FourLevels> Keymap::four_levels() const {
  for (size_t i = 0; i < types_.size(); ++i) {
    const KeyType& type = types_[i];
    const Modifiers third = type.mask & ~kShiftMask;
    const bool has_one_more = third != 0 && (third & (third - 1)) == 0;
    if (type.level_count == 4 && has_one_more && LevelOf(type, 0) == 0 &&
        LevelOf(type, kShiftMask) == 1 && LevelOf(type, third) == 2 &&
        LevelOf(type, kShiftMask | third) == 3) {
      return FourLevels{static_cast<uint8_t>(i), third};
    }
  }
  return std::nullopt;
}

xkb_keysym_t Keymap::Symbol(uint8_t keycode, uint8_t group, Modifiers modifiers) const {
  const Key& key = keys_[keycode];
  if (key.symbols.empty()) return XKB_KEY_NoSymbol;
  const uint8_t own_group = GroupOf(key, group);
  const uint8_t type = key.types[own_group];
  if (type >= types_.size()) return XKB_KEY_NoSymbol;
  const uint8_t level = LevelOf(types_[type], modifiers);
  if (level >= key.width) return XKB_KEY_NoSymbol;
  return key.symbols[size_t{own_group} * key.width + level];
}

bool Keymap::Gives(uint8_t keycode, uint8_t group, xkb_keysym_t symbol) const {
  const Key& key = keys_[keycode];
  if (key.symbols.empty()) return false;
  const auto first = key.symbols.begin() + size_t{GroupOf(key, group)} * key.width;
  return std::find(first, first + key.width, symbol) != first + key.width;
}

std::optional<uint8_t> Keymap::FindKey(xkb_keysym_t symbol, uint8_t group,
                                       const Keycodes& except) const {
  for (int keycode = min_keycode_; keycode <= max_keycode_; ++keycode) {
    if (!except[keycode] && Symbol(keycode, group, 0) == symbol) return keycode;
  }
  return std::nullopt;
}

std::unordered_map<char32_t, Stroke> Keymap::Characters(uint8_t group, Modifiers third_level,
                                                        const Keycodes& except) const {
  using Rank = std::tuple<bool, int>;
  const Modifiers both = kShiftMask | third_level;
  const std::pair<Modifiers, int> ways[] = {{0, 0}, {kShiftMask, 1}, {third_level, 2}, {both, 3}};
  std::unordered_map<char32_t, Stroke> strokes;
  std::unordered_map<char32_t, Rank> ranks;
  for (int keycode = min_keycode_; keycode <= max_keycode_; ++keycode) {
    if (except[keycode]) continue;
    for (const auto& [modifiers, effort] : ways) {
      const char32_t character = CharacterOf(Symbol(keycode, group, modifiers));
      if (character == 0) continue;
      const Rank rank{keycode > kLastMainKey, effort};
      const auto [known, is_new] = ranks.try_emplace(character, rank);
      if (!is_new && known->second <= rank) continue;
      known->second = rank;
      strokes[character] = {static_cast<uint8_t>(keycode), modifiers};
    }
  }
  return strokes;
}

xcb_xkb_get_map_cookie_t AskForKeymap(xcb_connection_t* connection,
                                      xcb_xkb_device_spec_t keyboard) {
  return xcb_xkb_get_map(connection, keyboard, kTypesAndSymbols, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                         0, 0, 0, 0);
}

std::optional<Keymap> ReadKeymap(xcb_connection_t* connection) {
  const auto reply =
      Await(connection, xcb_xkb_get_map_reply, AskForKeymap(connection, XCB_XKB_ID_USE_CORE_KBD));
  if (!reply) return std::nullopt;
  return Keymap::Parse(*reply);
}

bool IsOfKeypad(xkb_keysym_t symbol) {
  return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

xkb_keysym_t SymbolOf(char32_t character) {
  const bool is_control = character < ' ' || (character >= 0x7f && character < 0xa0);
  if (is_control) return XKB_KEY_NoSymbol;
  const xkb_keysym_t symbol = xkb_utf32_to_keysym(character);
  return xkb_keysym_to_utf32(symbol) == character ? symbol : xkb_keysym_t{XKB_KEY_NoSymbol};
}

}  // namespace deskhand::platform
