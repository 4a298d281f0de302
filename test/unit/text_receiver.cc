#include "unit/text_receiver.h"

#include <cstdlib>
#include <utility>

#include <poll.h>
#include <xkbcommon/xkbcommon-x11.h>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"
#include "platform/x11/xkb_protocol.h"

namespace deskhand {

using platform::Await;
using platform::MakeAtom;

TextReceiver::TextReceiver(Pings pings)
    : connection_(xcb_connect(nullptr, nullptr)),
      pings_(pings),
      context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  xkb_x11_setup_xkb_extension(connection_, 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                              nullptr, &xkb_event_, nullptr);
  constexpr uint16_t kEvents =
      XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  xcb_xkb_select_events(connection_, XCB_XKB_ID_USE_CORE_KBD, kEvents, 0, kEvents, 0xff, 0xff,
                        nullptr);
  protocols_ = *MakeAtom(connection_, "WM_PROTOCOLS");
  ping_ = *MakeAtom(connection_, "_NET_WM_PING");
  window_ = xcb_generate_id(connection_);
  const uint32_t values[] = {/*override_redirect=*/1, XCB_EVENT_MASK_KEY_PRESS};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen_->root, 0, 0, 100, 100, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  if (pings == Pings::kAnswered) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, protocols_, XCB_ATOM_ATOM, 32,
                        1, &ping_);
  }
  xcb_map_window(connection_, window_);
  Focus();
  thread_ = std::thread([this] { Run(); });
}

TextReceiver::~TextReceiver() {
  {
    const std::lock_guard lock(mutex_);
    is_ending_ = true;
  }
  changed_.notify_all();
  thread_.join();
  xkb_state_unref(state_);
  xkb_keymap_unref(keymap_);
  xkb_context_unref(context_);
  xcb_disconnect(connection_);
}

void TextReceiver::Focus() const {
  xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_NONE, window_, XCB_CURRENT_TIME);
  Await(connection_, xcb_get_input_focus_reply, xcb_get_input_focus(connection_));
}

void TextReceiver::SetStopped(bool is_stopped) {
  const std::lock_guard lock(mutex_);
  is_stopped_ = is_stopped;
  changed_.notify_all();
}

std::u32string TextReceiver::TextLike(const std::u32string& expected) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, std::chrono::seconds(20),
                    [&] { return text_.size() >= expected.size(); });
  return std::exchange(text_, {});
}

int TextReceiver::keymap_loads() {
  const std::lock_guard lock(mutex_);
  return keymap_loads_;
}

void TextReceiver::Run() {
  for (;;) {
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return !is_stopped_ || is_ending_; });
      if (is_ending_) return;
    }
    const platform::Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (event) {
      Handle(*event);
    } else if (xcb_connection_has_error(connection_)) {
      return;
    } else {
      pollfd socket{xcb_get_file_descriptor(connection_), POLLIN, 0};
      poll(&socket, 1, 20);
    }
  }
}

void TextReceiver::Handle(const xcb_generic_event_t& event) {
  const uint8_t type = event.response_type & 0x7f;
  if (type == xkb_event_ && state_) {
    xkb_state_unref(std::exchange(state_, nullptr));
    xkb_keymap_unref(std::exchange(keymap_, nullptr));
  } else if (type == XCB_KEY_PRESS) {
    OnKey(reinterpret_cast<const xcb_key_press_event_t&>(event));
  } else if (type == XCB_CLIENT_MESSAGE && pings_ == Pings::kAnswered) {
    AnswerPing(reinterpret_cast<const xcb_client_message_event_t&>(event));
  }
}

void TextReceiver::OnKey(const xcb_key_press_event_t& event) {
  const bool is_load = !state_;
  if (is_load) {
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection_);
    keymap_ =
        xkb_x11_keymap_new_from_device(context_, connection_, device, XKB_KEYMAP_COMPILE_NO_FLAGS);
    state_ = xkb_state_new(keymap_);
  }
  // The core protocol has the layout's number beside the modifiers.
  xkb_state_update_mask(state_, event.state & 0xff, 0, 0, 0, 0, (event.state >> 13) & 3);
  const char32_t character = xkb_state_key_get_utf32(state_, event.detail);
  const std::lock_guard lock(mutex_);
  keymap_loads_ += is_load;
  if (character == 0) return;
  text_ += character == '\r' ? U'\n' : character;
  changed_.notify_all();
}

void TextReceiver::AnswerPing(const xcb_client_message_event_t& message) {
  if (message.type != protocols_ || message.data.data32[0] != ping_) return;
  xcb_client_message_event_t answer = message;
  answer.response_type = XCB_CLIENT_MESSAGE;
  answer.window = screen_->root;
  xcb_send_event(connection_, false, screen_->root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&answer));
  xcb_flush(connection_);
}

}  // namespace deskhand
