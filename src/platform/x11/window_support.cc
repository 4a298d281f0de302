#include "platform/x11/window_support.h"

#include <string>
#include <utility>
#include <vector>

#include <xcb/res.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {

std::optional<WindowSupport> QueryWindowSupport(xcb_connection_t* connection, int screen_number) {
  WindowSupport support;
  WindowAtoms& atoms = support.atoms;
  const std::vector<std::pair<std::string, xcb_atom_t*>> names{
      {"_GTK_APPLICATION_ID", &atoms.gtk_application_id},
      {"_NET_SUPPORTING_WM_CHECK", &atoms.net_supporting_wm_check},
      {"_NET_WM_PID", &atoms.net_wm_pid},
      {"_NET_WM_WINDOW_OPACITY", &atoms.net_wm_window_opacity},
      {"WM_STATE", &atoms.wm_state},
      {"_XROOTPMAP_ID", &atoms.xrootpmap_id},
      {"_NET_WM_CM_S" + std::to_string(screen_number), &atoms.compositor},
  };
  xcb_prefetch_extension_data(connection, &xcb_res_id);
  std::vector<xcb_intern_atom_cookie_t> cookies;
  cookies.reserve(names.size());
  for (const auto& [name, atom] : names) {
    // Made when there is none yet: a window may get the property while the connection lasts.
    cookies.push_back(xcb_intern_atom(connection, /*only_if_exists=*/0, name.size(), name.data()));
  }
  bool has_all = true;
  for (size_t index = 0; index < names.size(); ++index) {
    const auto reply = Await(connection, xcb_intern_atom_reply, cookies[index]);
    has_all &= reply != nullptr;
    if (reply) *names[index].second = reply->atom;
  }
  const xcb_query_extension_reply_t* resources = xcb_get_extension_data(connection, &xcb_res_id);
  if (!has_all || !resources) return std::nullopt;
  if (resources->present) {
    const auto version =
        Await(connection, xcb_res_query_version_reply, xcb_res_query_version(connection, 1, 2));
    if (!version) return std::nullopt;
    support.has_client_ids = std::pair(version->server_major, version->server_minor) >=
                             std::pair(uint16_t{1}, uint16_t{2});
  }
  return support;
}

}  // namespace deskhand::platform
