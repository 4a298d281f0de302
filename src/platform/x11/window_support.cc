#include "platform/x11/window_support.h"

#include <string>
#include <utility>
#include <vector>

#include <xcb/res.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

/// Types that are not in it count as ordinary when no other is given, such as one of a toolkit.
const std::vector<std::pair<std::string, WindowType>>& WindowTypes() {
  static const auto& types = *new std::vector<std::pair<std::string, WindowType>>{
      {"NORMAL", WindowType::kOrdinary},    {"DIALOG", WindowType::kOrdinary},
      {"UTILITY", WindowType::kOrdinary},   {"TOOLBAR", WindowType::kOrdinary},
      {"SPLASH", WindowType::kOrdinary},    {"DESKTOP", WindowType::kDesktop},
      {"DOCK", WindowType::kDock},          {"MENU", WindowType::kMenu},
      {"DROPDOWN_MENU", WindowType::kMenu}, {"POPUP_MENU", WindowType::kMenu},
      {"TOOLTIP", WindowType::kMenu},       {"COMBO", WindowType::kMenu},
      {"DND", WindowType::kMenu},           {"NOTIFICATION", WindowType::kNotification},
  };
  return types;
}

}  // namespace

std::optional<WindowSupport> QueryWindowSupport(xcb_connection_t* connection, int screen_number) {
  WindowSupport support;
  WindowAtoms& atoms = support.atoms;
  std::vector<std::pair<std::string, xcb_atom_t*>> names{
      {"_GTK_APPLICATION_ID", &atoms.gtk_application_id},
      {"_NET_SUPPORTING_WM_CHECK", &atoms.net_supporting_wm_check},
      {"_NET_WM_PID", &atoms.net_wm_pid},
      {"_NET_WM_WINDOW_OPACITY", &atoms.net_wm_window_opacity},
      {"WM_STATE", &atoms.wm_state},
      {"_XROOTPMAP_ID", &atoms.xrootpmap_id},
      {"_NET_WM_CM_S" + std::to_string(screen_number), &atoms.compositor},
      {"_DESKHAND_HIDDEN", &atoms.deskhand_hidden},
      {"_GTK_FRAME_EXTENTS", &atoms.gtk_frame_extents},
      {"_NET_FRAME_EXTENTS", &atoms.net_frame_extents},
      {"_NET_WM_STATE", &atoms.net_wm_state},
      {"_NET_WM_STATE_HIDDEN", &atoms.net_wm_state_hidden},
      {"_NET_WM_WINDOW_TYPE", &atoms.net_wm_window_type},
  };
  for (const auto& [name, type] : WindowTypes()) atoms.types.emplace_back(XCB_ATOM_NONE, type);
  for (size_t index = 0; index < atoms.types.size(); ++index) {
    names.emplace_back("_NET_WM_WINDOW_TYPE_" + WindowTypes()[index].first,
                       &atoms.types[index].first);
  }
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
