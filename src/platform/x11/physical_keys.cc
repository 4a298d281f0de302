#include "platform/x11/physical_keys.h"

#include <string_view>
#include <vector>

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

// The server's own names of the devices that XTEST plays.
constexpr std::string_view kPlayedByPrograms = "XTEST";

std::bitset<256> HeldKeys(const xcb_input_query_device_state_reply_t& reply) {
  std::bitset<256> held;
  auto classes = xcb_input_query_device_state_classes_iterator(&reply);
  for (; classes.rem > 0; xcb_input_input_state_next(&classes)) {
    if (classes.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
    const auto* state = reinterpret_cast<const xcb_input_key_state_t*>(classes.data);
    for (size_t key = 0; key < held.size(); ++key) {
      if ((state->keys[key / 8] >> (key % 8) & 1) != 0) held.set(key);
    }
  }
  return held;
}

const xcb_query_extension_reply_t* InputExtension(xcb_connection_t* connection) {
  const auto* data = xcb_get_extension_data(connection, &xcb_input_id);
  return data && data->present ? data : nullptr;
}

}  // namespace

std::vector<uint8_t> KeyboardDevices(xcb_connection_t* connection, bool with_played) {
  if (!InputExtension(connection)) return {};
  const auto version_cookie = xcb_input_xi_query_version(connection, 2, 0);
  const auto devices_cookie = xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL);
  const auto version = Await(connection, xcb_input_xi_query_version_reply, version_cookie);
  const auto devices = Await(connection, xcb_input_xi_query_device_reply, devices_cookie);
  if (!version || !devices) return {};
  std::vector<uint8_t> keyboards;
  auto infos = xcb_input_xi_query_device_infos_iterator(devices.get());
  for (; infos.rem > 0; xcb_input_xi_device_info_next(&infos)) {
    if (infos.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    const std::string_view name(xcb_input_xi_device_info_name(infos.data),
                                xcb_input_xi_device_info_name_length(infos.data));
    const bool is_played = name.find(kPlayedByPrograms) != std::string_view::npos;
    if (is_played && !with_played) continue;
    keyboards.push_back(static_cast<uint8_t>(infos.data->deviceid));
  }
  return keyboards;
}

std::vector<RealKeyboard> RealKeyboards(const Session& session) {
  std::vector<RealKeyboard> keyboards;
  for (const uint8_t id : KeyboardDevices(session.connection(), /*with_played=*/false)) {
    const auto state = Await(session.connection(), xcb_input_query_device_state_reply,
                             xcb_input_query_device_state(session.connection(), id));
    if (state) keyboards.push_back({.id = id, .held = HeldKeys(*state)});
  }
  return keyboards;
}

void PressAnew(const Session& session, const RealKeyboard& keyboard, uint8_t keycode) {
  const auto* extension = InputExtension(session.connection());
  if (!extension) return;
  for (const int type : {XCB_INPUT_DEVICE_KEY_RELEASE, XCB_INPUT_DEVICE_KEY_PRESS}) {
    xcb_test_fake_input(session.connection(), static_cast<uint8_t>(extension->first_event + type),
                        keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, keyboard.id);
  }
}

}  // namespace deskhand::platform
