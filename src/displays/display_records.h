// Which displays are attached, and where each lies.
// Space: points in the global desktop space: origin at the top-left corner of the primary display,
// y down, negatives legal. Threads: any; the exported functions call it on the JavaScript thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/displays.h"

namespace deskhand {

struct DisplayRecord {
  uint32_t id = 0;
  double width = 0;  // points
  double height = 0;
  bool is_main = false;
  double origin_x = 0;
  double origin_y = 0;
  double scale_factor = 0;  // pixels per point
  std::string name;
};

/// One record per screen that has an identifier, in the platform's order.
std::vector<DisplayRecord> DisplayRecords();

/// The record of the display named by `wanted`, or of the main display when none is. When no screen
/// has that identifier: the platform's main screen, else its first, else an all-zero record, each
/// under the main display's identifier.
DisplayRecord DisplayRecordFor(std::optional<uint32_t> wanted);

/// The first of `screens` with this identifier; null when there is none.
const platform::Screen* FindScreen(const std::vector<platform::Screen>& screens, uint32_t id);

/// The top edge of `frame` in the global desktop space.
double GlobalOriginY(const Rect& frame, double primary_height);

}  // namespace deskhand
