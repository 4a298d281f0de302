// Running applications as callers see them.
// Texts are UTF-8. Threads: the JavaScript threads, inside a call scope.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/applications.h"

namespace deskhand {

/// A running application.
struct AppInfo {
  std::string bundle_id = {};     // empty when it has none
  std::string display_name = {};  // in the user's language; empty when it has none
  int32_t pid = 0;
};

/// Whatever the application is: nothing is filtered.
AppInfo AppInfoOf(const platform::RunningApplication& application);

/// The regular applications that have a bundle identifier, in the system's order.
std::vector<AppInfo> RunningApps();

/// The application that gets key events, whether it is a regular one or not; none when there is
/// none, or when it has no bundle identifier.
std::optional<AppInfo> FrontmostApp();

}  // namespace deskhand
