#include "unit/input_receiver.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include "platform/x11/reply.h"
#include "platform/x11/xkb_protocol.h"

namespace deskhand {

using platform::Await;

namespace {

uint8_t FindRealKeyboard(xcb_connection_t* connection) {
  Await(connection, xcb_input_xi_query_version_reply, xcb_input_xi_query_version(connection, 2, 0));
  const auto devices = Await(connection, xcb_input_xi_query_device_reply,
                             xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL));
  auto infos = xcb_input_xi_query_device_infos_iterator(devices.get());
  for (; infos.rem > 0; xcb_input_xi_device_info_next(&infos)) {
    const std::string_view name(xcb_input_xi_device_info_name(infos.data),
                                xcb_input_xi_device_info_name_length(infos.data));
    const bool is_keyboard = infos.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD;
    if (is_keyboard && name.find("XTEST") == std::string_view::npos) {
      return static_cast<uint8_t>(infos.data->deviceid);
    }
  }
  return 0;
}

}  // namespace

std::string ToText(const std::vector<ReceivedEvent>& events) {
  static constexpr const char* kNames[] = {"key down", "key up", "button down", "button up",
                                           "motion"};
  std::ostringstream text;
  for (const ReceivedEvent& event : events) {
    text << kNames[event.type - XCB_KEY_PRESS] << ' ' << int{event.detail} << " state "
         << event.state << " at " << event.x << ',' << event.y << '\n';
  }
  return text.str();
}

InputReceiver::InputReceiver() : connection_(xcb_connect(nullptr, nullptr)) {
  screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  const xcb_window_t window = xcb_generate_id(connection_);
  const uint32_t values[] = {/*override_redirect=*/1,
                             XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                 XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                 XCB_EVENT_MASK_POINTER_MOTION};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 0, 0,
                    screen_->width_in_pixels, screen_->height_in_pixels, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  xcb_map_window(connection_, window);
  xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
  Await(connection_, xcb_xkb_use_extension_reply, xcb_xkb_use_extension(connection_, 1, 0));
  real_keyboard_ = FindRealKeyboard(connection_);
  Settle();
}

InputReceiver::~InputReceiver() { xcb_disconnect(connection_); }

void InputReceiver::Settle() {
  Await(connection_, xcb_get_input_focus_reply, xcb_get_input_focus(connection_));
}

std::vector<ReceivedEvent> InputReceiver::Take() {
  Settle();
  std::vector<ReceivedEvent> events;
  while (const platform::Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
    const uint8_t type = event->response_type;
    if (type < XCB_KEY_PRESS || type > XCB_MOTION_NOTIFY) continue;
    // The five kinds of events lie alike in memory.
    const auto* input = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
    events.push_back({type, type == XCB_MOTION_NOTIFY ? uint8_t{0} : input->detail, input->state,
                      input->root_x, input->root_y});
  }
  return events;
}

std::vector<ReceivedEvent> InputReceiver::TakePresses() {
  std::vector<ReceivedEvent> events = Take();
  std::erase_if(events, [](const ReceivedEvent& event) { return event.type == XCB_MOTION_NOTIFY; });
  return events;
}

void InputReceiver::PressPhysically(uint8_t keycode, bool is_down) {
  const uint8_t first = xcb_get_extension_data(connection_, &xcb_input_id)->first_event;
  const uint8_t type =
      first + (is_down ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE);
  xcb_test_fake_input(connection_, type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, real_keyboard_);
  Settle();
}

bool InputReceiver::IsDown(uint8_t keycode) {
  const auto keys = Await(connection_, xcb_query_keymap_reply, xcb_query_keymap(connection_));
  return (keys->keys[keycode / 8] >> (keycode % 8) & 1) != 0;
}

void InputReceiver::Lock(uint8_t modifiers) {
  xcb_xkb_latch_lock_state(connection_, XCB_XKB_ID_USE_CORE_KBD, /*affectModLocks=*/0xff, modifiers,
                           0, 0, 0, 0, 0);
  Settle();
}

uint8_t InputReceiver::Locked() {
  const auto state = Await(connection_, xcb_xkb_get_state_reply,
                           xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD));
  return state->lockedMods;
}

uint8_t InputReceiver::KeycodeOf(xcb_keysym_t symbol) {
  const xcb_setup_t* setup = xcb_get_setup(connection_);
  const uint8_t first = setup->min_keycode;
  const uint8_t count = setup->max_keycode - first + 1;
  const auto mapping = Await(connection_, xcb_get_keyboard_mapping_reply,
                             xcb_get_keyboard_mapping(connection_, first, count));
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
  const int each = mapping->keysyms_per_keycode;
  for (int key = 0; key < count; ++key) {
    if (std::find(symbols + key * each, symbols + (key + 1) * each, symbol) !=
        symbols + (key + 1) * each) {
      return first + key;
    }
  }
  return 0;
}

}  // namespace deskhand
