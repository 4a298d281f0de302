#include "platform/x11/live_keymap.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/x11/atoms.h"
#include "platform/x11/device_keymaps.h"
#include "platform/x11/key_codes.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

constexpr uint16_t kCoreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

constexpr uint16_t kEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
constexpr uint16_t kMapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;

// XKB protocol: every keymap has this type of two levels, which Shift chooses.
constexpr uint8_t kTwoLevelType = 1;

constexpr uint8_t kOneGroup = 1;

// Where these keys are on nearly all keyboards. Some keymaps have that of the third level on
// another keycode, too, which no keyboard sends.
constexpr uint8_t kLeftShift = 50;
constexpr uint8_t kRightAlt = 108;

void SelectEvents(xcb_connection_t* connection) {
  // Of the state only the layout: everything else changes with each key that the user presses.
  xcb_xkb_select_events_details_t details{};
  details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
  xcb_xkb_select_events_aux(connection, kCoreKeyboard, kEvents | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                            kEvents, kMapParts, kMapParts, &details);
}

}  // namespace

std::unique_ptr<LiveKeymap> LiveKeymap::Start(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &xcb_xkb_id);
  if (!data || !data->present) return nullptr;
  const auto use = Await(connection, xcb_xkb_use_extension_reply,
                         xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, 0));
  if (!use || !use->supported) return nullptr;
  const auto property = MakeAtom(connection, "_DESKHAND_LENT_KEYS");
  if (!property) return nullptr;
  SelectEvents(connection);
  return std::unique_ptr<LiveKeymap>(new LiveKeymap(session, data->first_event, *property));
}

LiveKeymap::LiveKeymap(const Session& session, uint8_t first_event, xcb_atom_t property)
    : connection_(session.connection()),
      root_(session.screen().root),
      first_event_(first_event),
      property_(property) {}

void LiveKeymap::Handle(const xcb_generic_event_t& event) {
  if (event.response_type != first_event_) return;
  switch (event.pad0) {  // which of XKB's events
    case XCB_XKB_MAP_NOTIFY:
      is_stale_ |= std::find(own_changes_.begin(), own_changes_.end(), event.full_sequence) ==
                   own_changes_.end();
      break;
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
      is_stale_ |= event.full_sequence != own_choice_;
      break;
    case XCB_XKB_STATE_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
      has_other_group_ |= notify.group != group_;
      group_ = notify.group;
      break;
    }
    default:
      break;
  }
}

bool LiveKeymap::Refresh() {
  if (is_stale_) {
    ChooseOwnKeyboard();
    const auto state_cookie = xcb_xkb_get_state(connection_, kCoreKeyboard);
    const auto lent = ReadLentKeys(connection_, root_, property_);
    auto keymap = ReadKeymap(connection_);
    const auto devices = ReadDeviceKeymaps(connection_);
    const auto state = Await(connection_, xcb_xkb_get_state_reply, state_cookie);
    if (!lent || !keymap || !state) return false;
    keymap_ = std::move(*keymap);
    group_ = state->group;
    FindSpareKeys(*lent, devices);
    is_stale_ = false;
    has_other_group_ = true;
  }
  if (!has_other_group_) return true;
  has_other_group_ = false;
  characters_ = keymap_.Characters(group_, third_level_, spare_);
  shift_key_ = FindModifierKey(XKB_KEY_Shift_L, kLeftShift, third_level_);
  third_level_key_ = FindModifierKey(XKB_KEY_ISO_Level3_Shift, kRightAlt, kShiftMask);
  return true;
}

/// The keyboard that programs see has the keymap of whichever keyboard was used last. Ours becomes
/// that one with our first key; a release of a key that is not down is told to nobody.
void LiveKeymap::ChooseOwnKeyboard() {
  const uint8_t keycode = xcb_get_setup(connection_)->max_keycode;
  own_choice_ = xcb_test_fake_input(connection_, XCB_KEY_RELEASE, keycode, XCB_CURRENT_TIME,
                                    XCB_NONE, 0, 0, 0)
                    .sequence;
}

/// Whether a key has nothing on it but what is `lent`.
bool LiveKeymap::IsSpare(const Key& key, const KeySymbols* lent) const {
  if (key.is_empty()) return true;
  return lent && key.group_info == kOneGroup && key.width == spare_levels_ &&
         std::equal(key.symbols.begin(), key.symbols.end(), lent->begin());
}

void LiveKeymap::FindSpareKeys(const LentKeys& lent, const std::vector<Keymap>& devices) {
  const auto four_levels = keymap_.four_levels();
  spare_type_ = four_levels ? four_levels->type : kTwoLevelType;
  spare_levels_ = four_levels ? 4 : 2;
  third_level_ = four_levels ? four_levels->third_level : 0;
  spare_.reset();
  std::vector<std::pair<uint8_t, KeySymbols>> keys;
  for (int keycode = keymap_.min_keycode(); keycode <= keymap_.max_keycode(); ++keycode) {
    const auto entry = lent.keys.find(keycode);
    // Another keymap may have been loaded since: what is on the key now decides, on any keyboard.
    const KeySymbols* const symbols = entry == lent.keys.end() ? nullptr : &entry->second;
    const Key& key = keymap_.key(keycode);
    const bool is_spare = IsSpare(key, symbols) &&
                          std::all_of(devices.begin(), devices.end(), [&](const Keymap& device) {
                            return IsSpare(device.key(keycode), symbols);
                          });
    if (!is_spare) continue;
    spare_.set(keycode);
    keys.emplace_back(keycode, key.is_empty() ? KeySymbols{} : *symbols);
  }
  // A key that callers can name is of use to them even when its layout has nothing on it.
  std::stable_partition(keys.begin(), keys.end(),
                        [](const auto& key) { return !IsKeyPlace(key.first); });
  spare_keys_.Update(keys, spare_levels_);
}

std::optional<uint8_t> LiveKeymap::FindKey(xkb_keysym_t symbol, uint8_t keycode) const {
  const bool is_preferred = IsOfKeypad(symbol) ? keymap_.Gives(keycode, group_, symbol)
                                               : keymap_.Symbol(keycode, group_, 0) == symbol;
  if (!spare_[keycode] && is_preferred) return keycode;
  return keymap_.FindKey(symbol, group_, spare_);
}

std::optional<uint8_t> LiveKeymap::FindModifierKey(xkb_keysym_t symbol, uint8_t keycode,
                                                   Modifiers other) const {
  const auto key = FindKey(symbol, keycode);
  // In some layouts two of them together are a lock.
  if (key && keymap_.Symbol(*key, group_, other) != symbol) return std::nullopt;
  return key;
}

const Stroke* LiveKeymap::FindStroke(char32_t character) const {
  const auto found = characters_.find(character);
  return found == characters_.end() ? nullptr : &found->second;
}

Modifiers LiveKeymap::LevelModifiers(uint8_t level) const {
  return (level & 1 ? kShiftMask : 0) | (level & 2 ? third_level_ : 0);
}

bool LiveKeymap::Bind(const std::map<uint8_t, KeySymbols>& keys) {
  if (keys.empty()) return true;
  for (const auto& [keycode, symbols] : keys) {
    Key key{.group_info = kOneGroup, .width = spare_levels_};
    key.types.fill(spare_type_);
    key.symbols.assign(symbols.begin(), symbols.begin() + spare_levels_);
    keymap_.SetKey(keycode, std::move(key));
  }
  own_changes_.clear();
  // One change, since every program that shows a window reads the whole keymap anew after each. The
  // keys between are written as they are; but they are written on every keyboard.
  const uint8_t first = keys.begin()->first, last = keys.rbegin()->first;
  const auto devices = ReadDeviceKeymaps(connection_);
  const bool are_alike = std::all_of(devices.begin(), devices.end(), [&](const Keymap& device) {
    for (int keycode = first; keycode <= last; ++keycode) {
      if (!spare_[keycode] && device.key(keycode) != keymap_.key(keycode)) return false;
    }
    return true;
  });
  if (are_alike) return Write(first, last);
  bool is_written = true;
  for (auto key = keys.begin(); key != keys.end() && is_written;) {
    const uint8_t begin = key->first;
    uint8_t end = begin;
    while (++key != keys.end() && key->first == end + 1) ++end;
    is_written = Write(begin, end);
  }
  return is_written;
}

bool LiveKeymap::Write(uint8_t first, uint8_t last) {
  std::vector<uint8_t> body;
  uint16_t symbol_count = 0;
  const auto append = [&body](const void* data, size_t size) {
    const auto* const bytes = static_cast<const uint8_t*>(data);
    body.insert(body.end(), bytes, bytes + size);
  };
  for (int keycode = first; keycode <= last; ++keycode) {
    const Key& key = keymap_.key(keycode);
    xcb_xkb_key_sym_map_t head{};
    std::copy(key.types.begin(), key.types.end(), head.kt_index);
    head.groupInfo = key.group_info;
    head.width = key.width;
    head.nSyms = key.symbols.size();
    append(&head, sizeof(head));
    append(key.symbols.data(), key.symbols.size() * sizeof(xkb_keysym_t));
    symbol_count += head.nSyms;
  }
  const auto cookie = xcb_xkb_set_map_checked(
      connection_, kCoreKeyboard, XCB_XKB_MAP_PART_KEY_SYMS, /*flags=*/0, keymap_.min_keycode(),
      keymap_.max_keycode(), 0, 0, first, last - first + 1, symbol_count, 0, 0, 0, 0, 0, 0, 0, 0, 0,
      0, 0, 0, 0, 0, 0, 0, body.data());
  own_changes_.push_back(cookie.sequence);
  const XError error(xcb_request_check(connection_, cookie));
  is_stale_ |= error != nullptr;
  return !error && !xcb_connection_has_error(connection_);
}

}  // namespace deskhand::platform
