// Which window the user works in. Space: see monitors.h.
#pragma once

#include <optional>

#include "platform/x11/monitors.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// The window that the window manager calls active, or, without a window manager, the one with the
/// keyboard focus; none when there is no such window.
std::optional<xcb_window_t> ActiveWindow(const Session& session);

/// Its bounds.
std::optional<PixelRect> ActiveWindowBounds(const Session& session);

}  // namespace deskhand::platform
