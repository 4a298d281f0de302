// From what a person calls an application to its bundle identifier.
// Texts are UTF-8. Threads: the JavaScript threads, inside a call scope.
#pragma once

#include <optional>
#include <string>

namespace deskhand {

struct ResolvedApp {
  std::string bundle_id;
  std::string display_name;
};

/// Looks for `name` among the names of running applications, whatever their letter case; then takes
/// it for a bundle identifier; then for the name of an application in the application folders.
std::optional<ResolvedApp> ResolveApp(const std::string& name);

}  // namespace deskhand
