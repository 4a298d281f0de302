// The screens as the platform arranges them.
// Space: points, the platform's screen convention: origin at the bottom-left corner of the primary
// screen, y up. The logic converts; a backend whose native space is y-down flips once, here.
// Threads: any.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"

namespace deskhand::platform {

struct Screen {
  std::optional<uint32_t> id =
      {};                   // display identifier; a screen without one is never matched or listed
  Rect frame = {};          // the full screen, menu bars and docks included
  double scale_factor = 0;  // pixels per point
  std::optional<std::string> name = {};  // UTF-8
};

/// All attached screens, primary first; empty when there are none. Read anew on every call.
std::vector<Screen> Screens();

/// The screen that holds the active window; none when the platform knows of none.
std::optional<Screen> MainScreen();

/// Height in points of the primary screen, from a fresh reading; 0 when there are no screens.
double PrimaryScreenHeight();

/// Identifier of the main display; 0 when there are no displays.
uint32_t MainDisplayId();

/// Identifier of a display that holds a point of the global desktop space (origin at the top-left
/// corner of the primary screen, y down); none when no display does.
std::optional<uint32_t> DisplayAt(Point point);

}  // namespace deskhand::platform
