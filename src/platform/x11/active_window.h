// Which window the user works in. Space: see monitors.h.
#pragma once

#include <optional>

#include "platform/x11/monitors.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// Bounds of the window that the window manager calls active, or, without a window manager, of the
/// one with the keyboard focus; none when there is no such window.
std::optional<PixelRect> ActiveWindowBounds(const Session& session);

}  // namespace deskhand::platform
