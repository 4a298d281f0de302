// What asking about windows takes, once for each connection.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/window_tree.h"

namespace deskhand::platform {

struct WindowAtoms {
  xcb_atom_t gtk_application_id = XCB_ATOM_NONE;
  xcb_atom_t net_supporting_wm_check = XCB_ATOM_NONE;
  xcb_atom_t net_wm_pid = XCB_ATOM_NONE;
  xcb_atom_t net_wm_window_opacity = XCB_ATOM_NONE;
  xcb_atom_t wm_state = XCB_ATOM_NONE;
  xcb_atom_t xrootpmap_id = XCB_ATOM_NONE;
  xcb_atom_t compositor = XCB_ATOM_NONE;  // the selection that a compositing manager owns

  // Those of windows' roles.
  xcb_atom_t deskhand_hidden = XCB_ATOM_NONE;  // on windows that were hidden with their application
  xcb_atom_t gtk_frame_extents = XCB_ATOM_NONE;
  xcb_atom_t net_frame_extents = XCB_ATOM_NONE;
  xcb_atom_t net_wm_state = XCB_ATOM_NONE;
  xcb_atom_t net_wm_state_hidden = XCB_ATOM_NONE;
  xcb_atom_t net_wm_window_type = XCB_ATOM_NONE;
  std::vector<std::pair<xcb_atom_t, WindowType>> types;  // the values of the last
};

struct WindowSupport {
  WindowAtoms atoms;
  bool has_client_ids = false;  // X-Resource 1.2, which tells the process of a connection
};

/// None when the server does not answer. `screen_number` is the screen's on the server.
std::optional<WindowSupport> QueryWindowSupport(xcb_connection_t* connection, int screen_number);

}  // namespace deskhand::platform
