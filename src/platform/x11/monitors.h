// The monitors of an X screen.
// Space: pixels of the root window, origin at its top-left corner, y down.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/session.h"

namespace deskhand::platform {

/// A rectangle of whole pixels. Wide enough for any arithmetic on the protocol's 16-bit values.
struct PixelRect {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool empty() const { return width <= 0 || height <= 0; }
  bool operator==(const PixelRect&) const = default;
};

PixelRect Intersect(const PixelRect& a, const PixelRect& b);

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
