// The names of the clipboard's protocol, see the ICCCM, section 2, as the server numbers them.
#pragma once

#include <memory>

#include <xcb/xcb.h>

namespace deskhand::platform {

struct ClipboardAtoms {
  xcb_atom_t clipboard, manager;  // selections
  xcb_atom_t targets, multiple, timestamp, save_targets;
  xcb_atom_t utf8_string, plain_utf8, plain, text;  // texts in UTF-8; XCB_ATOM_STRING is Latin-1
  xcb_atom_t incr, null;                            // types
  xcb_atom_t transfer;                              // a property of our own windows

  /// Null when the server does not say.
  static std::unique_ptr<const ClipboardAtoms> Make(xcb_connection_t* connection);
};

}  // namespace deskhand::platform
