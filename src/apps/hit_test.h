// Which application a click would reach.
// Space: points in the global desktop space. Threads: the JavaScript threads, inside a call scope.
#pragma once

#include <optional>

#include "apps/app_records.h"
#include "platform/geometry.h"

namespace deskhand {

/// The owner of the frontmost ordinary window at this point that can be seen. Windows of this
/// process and of the system's user interface (docks, notifications) are looked through.
std::optional<AppInfo> AppAt(Point point);

}  // namespace deskhand
