#include "platform/x11/physical_keys.h"

#include <string_view>
#include <vector>

#include <xcb/xinput.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

// The server's own names of the devices that XTEST plays.
constexpr std::string_view kPlayedByPrograms = "XTEST";

/// The keyboards but those that programs play.
std::vector<xcb_input_device_id_t> RealKeyboards(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  std::vector<xcb_input_device_id_t> keyboards;
  const auto version_cookie = xcb_input_xi_query_version(connection, 2, 0);
  const auto devices_cookie = xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL);
  const auto version = Await(connection, xcb_input_xi_query_version_reply, version_cookie);
  const auto devices = Await(connection, xcb_input_xi_query_device_reply, devices_cookie);
  if (!version || !devices) return {};
  auto infos = xcb_input_xi_query_device_infos_iterator(devices.get());
  for (; infos.rem > 0; xcb_input_xi_device_info_next(&infos)) {
    const std::string_view name(xcb_input_xi_device_info_name(infos.data),
                                xcb_input_xi_device_info_name_length(infos.data));
    if (infos.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    if (name.find(kPlayedByPrograms) != std::string_view::npos) continue;
    keyboards.push_back(infos.data->deviceid);
  }
  return keyboards;
}

void AddKeys(const xcb_input_query_device_state_reply_t& reply, std::bitset<256>* held) {
  auto classes = xcb_input_query_device_state_classes_iterator(&reply);
  for (; classes.rem > 0; xcb_input_input_state_next(&classes)) {
    if (classes.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
    const auto* state = reinterpret_cast<const xcb_input_key_state_t*>(classes.data);
    for (size_t key = 0; key < held->size(); ++key) {
      if ((state->keys[key / 8] >> (key % 8) & 1) != 0) held->set(key);
    }
  }
}

}  // namespace

std::bitset<256> PhysicallyHeldKeys(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  std::bitset<256> held;
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &xcb_input_id);
  if (!data || !data->present) return held;
  for (const xcb_input_device_id_t keyboard : RealKeyboards(session)) {
    const auto state =
        Await(connection, xcb_input_query_device_state_reply,
              xcb_input_query_device_state(connection, static_cast<uint8_t>(keyboard)));
    if (state) AddKeys(*state, &held);
  }
  return held;
}

}  // namespace deskhand::platform
