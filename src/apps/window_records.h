// The ordinary windows on the screen as callers see them.
// Space: points in the global desktop space. Threads: the JavaScript threads, inside a call scope.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/geometry.h"

namespace deskhand {

struct WindowRecord {
  std::string bundle_id = {};  // of the application that owns it, UTF-8
  int32_t pid = 0;             // of the process that owns it
  Rect bounds = {};
  uint32_t display_id = 0;  // the display with its centre, else the main one
};

/// Front to back, without this process's own windows and those of applications that have no bundle
/// identifier.
std::vector<WindowRecord> WindowRecords();

}  // namespace deskhand
