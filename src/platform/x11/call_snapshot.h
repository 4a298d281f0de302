// What one call has already learned of the server, so that all of its answers agree.
// Thread: the one that opened the call scope.
#pragma once

#include <optional>
#include <vector>

#include "platform/x11/monitors.h"

namespace deskhand::platform {

struct CallSnapshot {
  std::optional<std::vector<Monitor>> monitors;
};

/// The snapshot of this thread's outermost call scope, emptied when that scope closes; null
/// outside.
CallSnapshot* CurrentCallSnapshot();

}  // namespace deskhand::platform
