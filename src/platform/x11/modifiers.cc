#include "platform/x11/modifiers.h"

#include <algorithm>
#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/input.h"
#include "platform/x11/key_codes.h"
#include "platform/x11/physical_keys.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

constexpr uint16_t kCoreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

// The left-hand keys, in the order in which they are pressed.
struct ModifierKey {
  uint64_t flag;
  uint16_t key_code;
};
constexpr ModifierKey kModifierKeys[] = {
    {modifier::kControl, virtual_key::kControl},
    {modifier::kOption, virtual_key::kOption},
    {modifier::kShift, virtual_key::kShift},
    {modifier::kCommand, virtual_key::kCommand},
};

/// The modifiers whose keys lock them: pressing such a key again would switch it over.
uint8_t LockingModifiers(const Keyboard& keyboard, const ModifierState& state) {
  uint8_t mask = XCB_MOD_MASK_LOCK;
  for (const xkb_keysym_t symbol : {XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock}) {
    if (const auto key = keyboard.KeycodeOfSymbol(symbol)) mask |= state.MaskOf(*key);
  }
  return mask;
}

/// The keyboard that the key is down on.
const RealKeyboard* FindHolder(const std::vector<RealKeyboard>& keyboards, uint8_t keycode) {
  const auto holder =
      std::find_if(keyboards.begin(), keyboards.end(),
                   [keycode](const RealKeyboard& keyboard) { return keyboard.held.test(keycode); });
  return holder == keyboards.end() ? nullptr : &*holder;
}

void SwitchLocks(xcb_connection_t* connection, uint8_t changed, uint8_t locked,
                 uint8_t unlatched = 0) {
  xcb_xkb_latch_lock_state(connection, kCoreKeyboard, changed, locked, /*lockGroup=*/0,
                           /*groupLock=*/0, unlatched, /*latchGroup=*/0, /*groupLatch=*/0);
}

}  // namespace

uint8_t ModifierState::MaskOf(uint8_t keycode) const {
  uint8_t mask = 0;
  for (size_t bit = 0; bit < keys_of.size(); ++bit) {
    const auto& keys = keys_of[bit];
    if (std::find(keys.begin(), keys.end(), keycode) != keys.end()) mask |= 1u << bit;
  }
  return mask;
}

uint8_t ModifierState::Held() const {
  uint8_t mask = 0;
  for (size_t bit = 0; bit < keys_of.size(); ++bit) {
    const auto& keys = keys_of[bit];
    const auto is_down = [this](uint8_t keycode) { return IsDown(keycode); };
    if (std::any_of(keys.begin(), keys.end(), is_down)) mask |= 1u << bit;
  }
  return mask;
}

ModifierQuestion::ModifierQuestion(xcb_connection_t* connection)
    : connection_(connection),
      mapping_(xcb_get_modifier_mapping(connection)),
      keymap_(xcb_query_keymap(connection)),
      state_(xcb_xkb_get_state(connection, kCoreKeyboard)) {}

ModifierQuestion::~ModifierQuestion() {
  if (is_taken_) return;
  for (const unsigned sequence : {mapping_.sequence, keymap_.sequence, state_.sequence}) {
    xcb_discard_reply(connection_, sequence);
  }
}

std::optional<ModifierState> ModifierQuestion::Take() {
  is_taken_ = true;
  const auto mapping = Await(connection_, xcb_get_modifier_mapping_reply, mapping_);
  const auto keymap = Await(connection_, xcb_query_keymap_reply, keymap_);
  const auto locks = Await(connection_, xcb_xkb_get_state_reply, state_);
  if (!mapping || !keymap || !locks) return std::nullopt;
  ModifierState state;
  state.locked = locks->lockedMods;
  state.latched = locks->latchedMods;
  std::copy(std::begin(keymap->keys), std::end(keymap->keys), state.keys_down.begin());
  const xcb_keycode_t* key = xcb_get_modifier_mapping_keycodes(mapping.get());
  for (auto& keys : state.keys_of) {
    for (int index = 0; index < mapping->keycodes_per_modifier; ++index, ++key) {
      if (*key != 0) keys.push_back(*key);
    }
  }
  return state;
}

ModifierGuard::ModifierGuard(const Session& session, InputDevice& device, const Keyboard& keyboard,
                             const ModifierState& state, uint64_t flags, Locks locks) {
  uint8_t wanted = 0;
  std::vector<uint8_t> keys;
  for (const auto& [flag, key_code] : kModifierKeys) {
    const auto key = (flags & flag) != 0 ? keyboard.KeycodeFor(key_code) : std::nullopt;
    if (!key) continue;
    const uint8_t mask = state.MaskOf(*key);
    wanted |= mask;
    if (mask == 0 || (mask & state.Held()) == 0) keys.push_back(*key);
  }
  ReleaseAllBut(wanted, session, device, keyboard, state);
  SetLocks(locks, session.connection(), keyboard, state);
  for (const uint8_t key : keys) device.Key(key, true);
  pressed_ = std::move(keys);
}

void ModifierGuard::ReleaseAllBut(uint8_t wanted, const Session& session, InputDevice& device,
                                  const Keyboard& keyboard, const ModifierState& state) {
  if ((state.Held() & ~wanted) == 0) return;
  const uint8_t kept = wanted | LockingModifiers(keyboard, state);
  const std::vector<RealKeyboard> keyboards = RealKeyboards(session);
  for (size_t bit = 0; bit < state.keys_of.size(); ++bit) {
    for (const uint8_t key : state.keys_of[bit]) {
      // A key may stand for several modifiers.
      const bool is_known =
          std::any_of(released_.begin(), released_.end(),
                      [key](const Released& released) { return released.keycode == key; });
      if (is_known || !state.IsDown(key) || (state.MaskOf(key) & kept) != 0) continue;
      released_.push_back({key, FindHolder(keyboards, key) != nullptr});
      device.Key(key, false);
    }
  }
}

void ModifierGuard::SetLocks(Locks locks, xcb_connection_t* connection, const Keyboard& keyboard,
                             const ModifierState& state) {
  uint8_t affected = 0, locked = 0;
  if (locks != Locks::kAsTheyAre) affected = XCB_MOD_MASK_LOCK;
  if (locks == Locks::kNumbers) {
    const auto key = keyboard.KeycodeOfSymbol(XKB_KEY_Num_Lock);
    locked = key ? state.MaskOf(*key) : 0;
    affected |= locked;
  }
  changed_locks_ = (state.locked ^ locked) & affected;
  former_locks_ = state.locked & changed_locks_;
  if (changed_locks_ == 0 && state.latched == 0) return;
  SwitchLocks(connection, changed_locks_, locked & changed_locks_, state.latched);
}

void ModifierGuard::End(const Session& session, InputDevice& device, Keyboard& keyboard) {
  for (auto key = pressed_.rbegin(); key != pressed_.rend(); ++key) device.Key(*key, false);
  if (changed_locks_ != 0) SwitchLocks(session.connection(), changed_locks_, former_locks_);
  if (released_.empty()) return;
  keyboard.WaitForPrograms(session);
  const std::vector<RealKeyboard> keyboards = RealKeyboards(session);
  for (const Released& key : released_) {
    const RealKeyboard* const holder = FindHolder(keyboards, key.keycode);
    if (holder) {
      PressAnew(session, *holder, key.keycode);
    } else if (!key.is_real) {
      device.GiveBack(key.keycode);
    }
  }
}

}  // namespace deskhand::platform
