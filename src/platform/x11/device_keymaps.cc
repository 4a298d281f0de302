#include "platform/x11/device_keymaps.h"

#include <optional>
#include <utility>

#include "platform/x11/physical_keys.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {

std::vector<Keymap> ReadDeviceKeymaps(xcb_connection_t* connection) {
  std::vector<xcb_xkb_get_map_cookie_t> cookies;
  for (const uint8_t device : KeyboardDevices(connection, /*with_played=*/true)) {
    cookies.push_back(AskForKeymap(connection, device));
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
