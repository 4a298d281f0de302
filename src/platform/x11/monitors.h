// The monitors of an X screen.
// Space: pixels of the root window, origin at its top-left corner, y down.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/pixel_rect.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

struct Monitor {
  uint32_t id = 0;  // never 0
  std::optional<std::string> name = {};
  PixelRect bounds;
};

/// The active monitors, primary first, the others in the server's order. A server without
/// RandR 1.5, or with no monitor active, has one: the whole screen. None when the server does not
/// say.
std::optional<std::vector<Monitor>> QueryMonitors(const Session& session);

/// Identifiers for monitors of these names: a hash of the name, which survives restarts of server
/// and process, moved on where two would be the same.
std::vector<uint32_t> MonitorIds(const std::vector<std::string>& names);

}  // namespace deskhand::platform
