#include "unit/typist.h"

#include <chrono>

#include "input/text_runs.h"
#include "platform/x11/input_state.h"
#include "platform/x11/reply.h"

namespace deskhand {
namespace {

using platform::InputState;
using platform::Session;

platform::Deadline Soon() { return platform::Clock::now() + std::chrono::seconds(5); }

}  // namespace

Typist::Typist() { const Session session(channel_, Soon()); }

void Typist::Begin(std::u16string_view text) {
  const Session session(channel_, Soon());
  InputState::Of(session)->keyboard->BeginText(session, text);
}

void Typist::Type(std::u16string_view text) {
  Begin(text);
  for (std::u16string_view left = text; !left.empty();) {
    const TextPiece piece = FirstPiece(left);
    const Session session(channel_, Soon());
    InputState* const input = InputState::Of(session);
    input->keyboard->TypeText(session, input->device, piece.units);
    left.remove_prefix(piece.units.size());
  }
  const Session session(channel_, Soon());
  InputState* const input = InputState::Of(session);
  input->keyboard->EndText(session, input->device);
  platform::Await(session.connection(), xcb_get_input_focus_reply,
                  xcb_get_input_focus(session.connection()));
}

std::map<uint8_t, platform::Key> UsedKeys(uint16_t keyboard) {
  platform::Channel channel;
  const Session session(channel, Soon());
  platform::Await(session.connection(), xcb_xkb_use_extension_reply,
                  xcb_xkb_use_extension(session.connection(), 1, 0));
  const auto reply = platform::Await(session.connection(), xcb_xkb_get_map_reply,
                                     platform::AskForKeymap(session.connection(), keyboard));
  const auto keymap = platform::Keymap::Parse(*reply);
  std::map<uint8_t, platform::Key> keys;
  for (int keycode = keymap->min_keycode(); keycode <= keymap->max_keycode(); ++keycode) {
    const platform::Key& key = keymap->key(keycode);
    if (!key.is_empty()) keys[keycode] = key;
  }
  return keys;
}

bool KeysRepeat() {
  platform::Channel channel;
  const Session session(channel, Soon());
  const auto reply = platform::Await(session.connection(), xcb_get_keyboard_control_reply,
                                     xcb_get_keyboard_control(session.connection()));
  return reply->global_auto_repeat == XCB_AUTO_REPEAT_MODE_ON;
}

void SetKeysRepeat(bool they_do) {
  platform::Channel channel;
  const Session session(channel, Soon());
  const uint32_t mode = they_do ? XCB_AUTO_REPEAT_MODE_ON : XCB_AUTO_REPEAT_MODE_OFF;
  xcb_change_keyboard_control(session.connection(), XCB_KB_AUTO_REPEAT_MODE, &mode);
  platform::Await(session.connection(), xcb_get_input_focus_reply,
                  xcb_get_input_focus(session.connection()));
}

void LockGroup(uint8_t group) {
  platform::Channel channel;
  const Session session(channel, Soon());
  xcb_connection_t* const connection = session.connection();
  platform::Await(connection, xcb_xkb_use_extension_reply, xcb_xkb_use_extension(connection, 1, 0));
  xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, /*lockGroup=*/1, group, 0, 0,
                           0);
  platform::Await(connection, xcb_get_input_focus_reply, xcb_get_input_focus(connection));
}

}  // namespace deskhand
