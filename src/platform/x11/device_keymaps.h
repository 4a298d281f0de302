// The keyboards behind the one that programs see. Each has a keymap of its own; mostly they are the
// same. Thread: whoever has a session on the input channel.
#pragma once

#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/keymap.h"

namespace deskhand::platform {

/// The keymaps of all of them, XTEST's too. None when the server cannot tell.
std::vector<Keymap> ReadDeviceKeymaps(xcb_connection_t* connection);

}  // namespace deskhand::platform
