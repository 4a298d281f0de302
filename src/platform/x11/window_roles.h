// What windows are to their users: asking for it, and what the answers mean.
// Space: pixels. Thread: the session's.
#pragma once

#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/window_support.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

struct RoleCookies {
  xcb_get_property_cookie_t type = {};
  xcb_get_property_cookie_t state = {};
  xcb_get_property_cookie_t mark = {};
  xcb_get_property_cookie_t frame = {};
  xcb_get_property_cookie_t shadow = {};
};

RoleCookies AskRole(xcb_connection_t* connection, const WindowAtoms& atoms, xcb_window_t window);

/// What these answers tell of the role; none when one is missing.
std::optional<WindowRole> ReadRole(xcb_connection_t* connection, const WindowAtoms& atoms,
                                   const RoleCookies& cookies);

/// Whether a change of this property changes a role.
bool IsOfRole(const WindowAtoms& atoms, xcb_atom_t property);

/// The first of a window's types, which come in the order of its preference, that is known.
WindowType TypeAmong(const WindowAtoms& atoms, const std::vector<uint32_t>& types);

/// What WM_STATE says; a window without it is withdrawn.
WindowState StateOf(std::optional<uint32_t> value);

/// Left, right, top, bottom; none when it is anything else, or no margins that a window can have.
std::optional<Margins> ReadMargins(const std::vector<uint32_t>& values);

}  // namespace deskhand::platform
