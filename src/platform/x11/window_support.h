// What asking about windows takes, once for each connection.
#pragma once

#include <optional>

#include <xcb/xcb.h>

namespace deskhand::platform {

struct WindowAtoms {
  xcb_atom_t gtk_application_id = XCB_ATOM_NONE;
  xcb_atom_t net_supporting_wm_check = XCB_ATOM_NONE;
  xcb_atom_t net_wm_pid = XCB_ATOM_NONE;
  xcb_atom_t net_wm_window_opacity = XCB_ATOM_NONE;
  xcb_atom_t wm_state = XCB_ATOM_NONE;
  xcb_atom_t xrootpmap_id = XCB_ATOM_NONE;
  xcb_atom_t compositor = XCB_ATOM_NONE;  // the selection that a compositing manager owns
};

struct WindowSupport {
  WindowAtoms atoms;
  bool has_client_ids = false;  // X-Resource 1.2, which tells the process of a connection
};

/// None when the server does not answer. `screen_number` is the screen's on the server.
std::optional<WindowSupport> QueryWindowSupport(xcb_connection_t* connection, int screen_number);

}  // namespace deskhand::platform
