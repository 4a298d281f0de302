// Names of properties and messages as the server numbers them.
#pragma once

#include <optional>
#include <string_view>

#include <xcb/xcb.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {

/// The atom of this name; XCB_ATOM_NONE when nobody has used the name yet, so that no window can
/// have it; none when the server does not say.
inline std::optional<xcb_atom_t> InternAtom(xcb_connection_t* connection, std::string_view name) {
  const auto reply =
      Await(connection, xcb_intern_atom_reply,
            xcb_intern_atom(connection, /*only_if_exists=*/true, name.size(), name.data()));
  if (!reply) return std::nullopt;
  return reply->atom;
}

/// The same, giving the name an atom when it has none.
inline std::optional<xcb_atom_t> MakeAtom(xcb_connection_t* connection, std::string_view name) {
  const auto reply =
      Await(connection, xcb_intern_atom_reply,
            xcb_intern_atom(connection, /*only_if_exists=*/false, name.size(), name.data()));
  if (!reply) return std::nullopt;
  return reply->atom;
}

}  // namespace deskhand::platform
