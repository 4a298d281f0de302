#include "platform/x11/device_keymaps.h"

#include <optional>
#include <utility>

#include <xcb/xinput.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {

std::vector<Keymap> ReadDeviceKeymaps(xcb_connection_t* connection) {
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &xcb_input_id);
  if (!data || !data->present) return {};
  const auto version_cookie = xcb_input_xi_query_version(connection, 2, 0);
  const auto devices_cookie = xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL);
  const auto version = Await(connection, xcb_input_xi_query_version_reply, version_cookie);
  const auto devices = Await(connection, xcb_input_xi_query_device_reply, devices_cookie);
  if (!version || !devices) return {};
  std::vector<xcb_xkb_get_map_cookie_t> cookies;
  auto infos = xcb_input_xi_query_device_infos_iterator(devices.get());
  for (; infos.rem > 0; xcb_input_xi_device_info_next(&infos)) {
    if (infos.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    cookies.push_back(AskForKeymap(connection, infos.data->deviceid));
  }
  std::vector<Keymap> keymaps;
  for (const xcb_xkb_get_map_cookie_t cookie : cookies) {
    const auto reply = Await(connection, xcb_xkb_get_map_reply, cookie);
    auto keymap = reply ? Keymap::Parse(*reply) : std::nullopt;
    if (keymap) keymaps.push_back(std::move(*keymap));
  }
  return keymaps;
}

}  // namespace deskhand::platform
