#include "platform/x11/active_window.h"

#include <cstring>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

/// _NET_ACTIVE_WINDOW of the root, see the Extended Window Manager Hints.
xcb_window_t ManagedActiveWindow(const Session& session) {
  xcb_connection_t* connection = session.connection();
  const xcb_atom_t property = InternAtom(connection, "_NET_ACTIVE_WINDOW").value_or(XCB_ATOM_NONE);
  if (property == XCB_ATOM_NONE) return XCB_NONE;
  const auto reply = Await(
      connection, xcb_get_property_reply,
      xcb_get_property(connection, false, session.screen().root, property, XCB_ATOM_WINDOW, 0, 1));
  if (!reply || reply->format != 32 || reply->value_len < 1) return XCB_NONE;
  xcb_window_t window = XCB_NONE;
  std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof(window));
  return window;
}

xcb_window_t FocusWindow(const Session& session) {
  const auto reply = Await(session.connection(), xcb_get_input_focus_reply,
                           xcb_get_input_focus(session.connection()));
  if (!reply) return XCB_NONE;
  const bool is_window =
      reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT && reply->focus != session.screen().root;
  return is_window ? reply->focus : static_cast<xcb_window_t>(XCB_NONE);
}

}  // namespace

std::optional<xcb_window_t> ActiveWindow(const Session& session) {
  xcb_window_t window = ManagedActiveWindow(session);
  if (window == XCB_NONE) window = FocusWindow(session);
  return window == XCB_NONE ? std::nullopt : std::optional(window);
}

std::optional<PixelRect> ActiveWindowBounds(const Session& session) {
  const auto active = ActiveWindow(session);
  if (!active) return std::nullopt;
  const xcb_window_t window = *active;
  xcb_connection_t* connection = session.connection();
  const auto geometry_cookie = xcb_get_geometry(connection, window);
  const auto origin_cookie =
      xcb_translate_coordinates(connection, window, session.screen().root, 0, 0);
  const auto geometry = Await(connection, xcb_get_geometry_reply, geometry_cookie);
  const auto origin = Await(connection, xcb_translate_coordinates_reply, origin_cookie);
  if (!geometry || !origin) return std::nullopt;
  return PixelRect{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

}  // namespace deskhand::platform
