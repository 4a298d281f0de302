#include "platform/x11/text_typing.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/x11/atoms.h"
#include "platform/x11/property.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

// How long the server may take to answer while we wait for somebody else.
constexpr std::chrono::seconds kLongestAnswer{2};

// How often we look whether a program rests.
constexpr std::chrono::milliseconds kRestInterval{10};

// After this time without news we look whether a receiver is still there.
constexpr std::chrono::milliseconds kLookInterval{50};

std::u32string CharactersOf(std::u16string_view text) {
  std::u32string characters;
  while (!text.empty()) characters += TakeCharacter(&text);
  return characters;
}

}  // namespace

std::unique_ptr<TextTyping> TextTyping::Start(const Session& session, LiveKeymap& keymap,
                                              const PingAtoms& atoms) {
  const auto turn = TypingTurn::Start(session);
  auto key_repeat = KeyRepeat::Start(session);
  const auto property = MakeAtom(session.connection(), "_DESKHAND_FORMER_LOCKS");
  if (!turn || !key_repeat || !property) return nullptr;
  return std::unique_ptr<TextTyping>(
      new TextTyping(session, keymap, std::move(key_repeat), *turn, atoms, *property));
}

TextTyping::TextTyping(const Session& session, LiveKeymap& keymap,
                       std::unique_ptr<KeyRepeat> key_repeat, TypingTurn turn,
                       const PingAtoms& atoms, xcb_atom_t former_locks_property)
    : connection_(session.connection()),
      root_(session.screen().root),
      atoms_(atoms),
      former_locks_property_(former_locks_property),
      keymap_(keymap),
      key_repeat_(std::move(key_repeat)),
      turn_(turn),
      next_ping_(FirstPing()) {}

void TextTyping::Handle(const xcb_client_message_event_t& message) {
  const auto number = PongNumber(message, atoms_);
  if (number) pending_.OnPong(/*window=*/message.data.data32[2], *number);
}

void TextTyping::Begin(const Session& session, std::u16string_view text) {
  is_open_ = true;
  can_type_ = false;
  ahead_ = text;
  reader_ = {};
  if (!turn_.Take(session, Clock::now() + kLongestTypingWait)) return;
  TakeEvents(session.link());  // what the one before us has changed
  key_repeat_->Suspend();
  const auto state = Await(connection_, xcb_xkb_get_state_reply,
                           xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD));
  if (!state || !keymap_.Refresh()) return;
  locked_ = state->lockedMods & keymap_.AllLevelModifiers();
  former_locks_ = ReadFormerLocks().value_or(locked_);
  const std::u32string characters = CharactersOf(text);
  can_type_ =
      Wanted(characters).empty() || (BeginWithSpareKeys(session) && Prepare(session, characters));
}

bool TextTyping::BeginWithSpareKeys(const Session& session) {
  ListenForPongs(session, true);
  is_listening_ = true;
  const auto lent = ReadLentKeys(connection_, root_, keymap_.lent_keys_property());
  const auto focus = QueryFocus(session);
  if (!lent || !focus) return false;
  if (lent->writer != turn_.window()) AdoptUses(session, *lent);
  published_ = *lent;
  FindReceiverNow(session, *focus);
  return true;
}

/// Another process has typed with the spare keys; nobody knows which, nor whether it still waits.
void TextTyping::AdoptUses(const Session& session, const LentKeys& lent) {
  keymap_.spare_keys().SetAllUsed(use_);
  for (const xcb_window_t window : lent.receivers) {
    const auto receiver = LookUpReceiver(session, atoms_, window);
    if (receiver) pending_.Add(window, receiver->answers_pings, use_, Clock::now());
  }
  ++use_;
}

void TextTyping::FindReceiverNow(const Session& session, xcb_window_t focus) {
  // Where the focus follows the pointer it is another window's without a change.
  if (focus == focus_ && focus != XCB_INPUT_FOCUS_POINTER_ROOT) return;
  focus_ = focus;
  receiver_ = FindReceiver(session, atoms_, focus);
}

void TextTyping::Type(const Session& session, InputDevice& device, std::u16string_view run) {
  if (!is_open_ || !can_type_) return;
  TakeEvents(session.link());
  if (!keymap_.Refresh()) {
    can_type_ = false;
    return;
  }
  while (!ahead_.empty() && std::u16string_view(u"\t\n\r").find(ahead_.front()) != ahead_.npos) {
    ahead_.remove_prefix(1);
  }
  // Something else than was announced is typed, too, only nothing is prepared ahead.
  const bool is_announced = ahead_.substr(0, run.size()) == run;
  ahead_ = is_announced ? ahead_.substr(run.size()) : std::u16string_view();
  std::optional<char16_t> next;
  if (is_announced) next = ahead_.empty() ? u' ' : ahead_.front();
  TypeAll(session, device, reader_.Read(run, next));
}

void TextTyping::End(const Session& session, InputDevice& device) {
  if (!is_open_) return;
  if (can_type_) TypeAll(session, device, reader_.End());
  is_open_ = can_type_ = false;
  ahead_ = {};
  if (is_listening_) ListenForPongs(session, false);
  is_listening_ = false;
  pending_.ForgetPings();
  key_repeat_->Resume();
  turn_.Give(session);
}

void TextTyping::TypeAll(const Session& session, InputDevice& device,
                         const std::u32string& characters) {
  for (size_t i = 0; i < characters.size() && can_type_; ++i) {
    if (TypeOne(characters[i], device)) continue;
    can_type_ = EndStretch(session, device) && (is_listening_ || BeginWithSpareKeys(session)) &&
                Prepare(session, characters.substr(i) + CharactersOf(ahead_));
    // Without a single spare key some characters cannot be typed.
    if (can_type_) TypeOne(characters[i], device);
  }
  const bool has_ended = EndStretch(session, device);
  can_type_ = can_type_ && has_ended;
}

/// False when the character must be put on a key first.
bool TextTyping::TypeOne(char32_t character, InputDevice& device) {
  if (const Stroke* const stroke = keymap_.FindStroke(character)) {
    // A modifier key may do something else while its modifier is locked.
    LockModifiers(0);
    HoldModifiers(device, stroke->modifiers);
    LockModifiers(stroke->modifiers & ~held_);
    device.Key(stroke->keycode, true);
    device.Key(stroke->keycode, false);
    return true;
  }
  const xkb_keysym_t symbol = SymbolOf(character);
  if (symbol == XKB_KEY_NoSymbol) return true;
  const auto place = keymap_.spare_keys().Find(symbol);
  if (!place) return false;
  // Programs need not know that keys give these modifiers.
  HoldModifiers(device, 0);
  LockModifiers(keymap_.LevelModifiers(place->level));
  device.Key(place->keycode, true);
  device.Key(place->keycode, false);
  keymap_.spare_keys().SetUsed(*place, use_);
  is_use_pending_ = true;
  return true;
}

void TextTyping::HoldModifiers(InputDevice& device, Modifiers modifiers) {
  const std::pair<Modifiers, std::optional<uint8_t>> keys[] = {
      {kShiftMask, keymap_.shift_key()},
      {keymap_.AllLevelModifiers() & ~kShiftMask, keymap_.third_level_key()}};
  for (const auto& [mask, key] : keys) {
    const bool is_wanted = (modifiers & mask) != 0;
    const bool is_held = (held_ & mask) != 0;
    if (!key || is_wanted == is_held) continue;
    device.Key(*key, is_wanted);
    held_ ^= mask;
  }
}

/// What was locked before a process that died in the middle of a text; none when none did.
std::optional<Modifiers> TextTyping::ReadFormerLocks() const {
  const auto property = Await(
      connection_, xcb_get_property_reply,
      xcb_get_property(connection_, false, root_, former_locks_property_, XCB_ATOM_CARDINAL, 0, 1));
  const auto locks = property ? ReadCard32(*property) : std::nullopt;
  if (!locks) return std::nullopt;
  return static_cast<Modifiers>(*locks & keymap_.AllLevelModifiers());
}

void TextTyping::LockModifiers(Modifiers modifiers) {
  if (locked_ == modifiers) return;
  if (locked_ == former_locks_) {
    const uint32_t locks = former_locks_;
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, former_locks_property_,
                        XCB_ATOM_CARDINAL, 32, 1, &locks);
  }
  locked_ = modifiers;
  xcb_xkb_latch_lock_state(connection_, XCB_XKB_ID_USE_CORE_KBD, keymap_.AllLevelModifiers(),
                           modifiers, 0, 0, 0, 0, 0);
}

/// Lets go of everything, and takes down who has got what. False when the connection is broken.
bool TextTyping::EndStretch(const Session& session, InputDevice& device) {
  HoldModifiers(device, 0);
  LockModifiers(former_locks_);
  xcb_delete_property(connection_, root_, former_locks_property_);
  xcb_flush(connection_);
  if (!is_use_pending_) return true;
  is_use_pending_ = false;
  const auto add = [this] {
    if (receiver_.window == XCB_NONE) return;
    pending_.Add(receiver_.window, receiver_.answers_pings, use_, Clock::now());
  };
  add();
  const auto focus = QueryFocus(session);
  if (!focus) return false;
  FindReceiverNow(session, *focus);
  add();  // the last of them may have gone to another one
  Publish();
  SendPings(session);
  ++use_;
  return true;
}

std::vector<xkb_keysym_t> TextTyping::Wanted(std::u32string_view characters) const {
  std::vector<xkb_keysym_t> wanted;
  const size_t capacity = keymap_.spare_keys().capacity();
  for (const char32_t character : characters) {
    if (wanted.size() >= capacity) break;
    const xkb_keysym_t symbol = SymbolOf(character);
    if (symbol == XKB_KEY_NoSymbol || keymap_.FindStroke(character)) continue;
    if (std::find(wanted.begin(), wanted.end(), symbol) == wanted.end()) wanted.push_back(symbol);
  }
  return wanted;
}

/// Puts as many of the characters on spare keys as there is room for, those that come first first.
bool TextTyping::Prepare(const Session& session, std::u32string_view characters) {
  const std::vector<xkb_keysym_t> wanted = Wanted(characters);
  SpareKeys& keys = keymap_.spare_keys();
  const auto last_use = keys.LastUseInTheWay(wanted);
  if (!last_use || !WaitUntilOver(session, *last_use)) return false;
  const auto changed = keys.Lend(wanted);
  Publish();  // before, so that whoever sees the change knows whose it is
  if (!keymap_.Bind(changed)) return false;
  if (changed.empty() || !receiver_.answers_pings) return true;
  pending_.Add(receiver_.window, receiver_.answers_pings, use_, Clock::now());
  const Use bound = use_++;
  return WaitUntilOver(session, bound);
}

void TextTyping::Publish() {
  LentKeys lent{.writer = turn_.window(),
                .receivers = pending_.Windows(),
                .keys = keymap_.spare_keys().Symbols()};
  const auto& known = lent.receivers;
  if (receiver_.window != XCB_NONE &&
      std::find(known.begin(), known.end(), receiver_.window) == known.end()) {
    lent.receivers.push_back(receiver_.window);
  }
  if (lent == published_) return;
  WriteLentKeys(connection_, root_, keymap_.lent_keys_property(), lent);
  published_ = std::move(lent);
}

void TextTyping::SendPings(const Session& session) {
  for (const xcb_window_t window : pending_.Unpinged()) {
    SendPing(session, atoms_, window, next_ping_);
    pending_.OnPing(window, next_ping_++);
  }
  xcb_flush(connection_);
}

bool TextTyping::WaitUntilOver(const Session& session, Use use) {
  const Deadline deadline = Clock::now() + kLongestTypingWait;
  Deadline next_look = Clock::now() + kLookInterval;
  for (;;) {
    TakeEvents(session.link());
    const Deadline now = Clock::now();
    pending_.Expire(now, [&](xcb_window_t window) { return IsAtRest(session, window); });
    if (pending_.over() >= use) return true;
    if (now >= deadline || xcb_connection_has_error(connection_)) return false;
    session.SetDeadline(now + kLongestAnswer);
    SendPings(session);
    if (now >= next_look) {
      for (const xcb_window_t window : pending_.Windows()) {
        if (!LookUpReceiver(session, atoms_, window)) pending_.Remove(window);
      }
      next_look = Clock::now() + kLookInterval;
      continue;
    }
    const Deadline expiry = pending_.NextExpiry().value_or(next_look);
    WaitForNews(session, std::clamp(expiry, now + kRestInterval, next_look + kRestInterval));
  }
}

}  // namespace deskhand::platform
