// The applications that are installed, running or not.
// Thread: a worker-pool thread, inside a call scope.
#pragma once

#include <string>
#include <vector>

namespace deskhand {

/// One copy of an installed application; texts are UTF-8.
struct InstalledAppEntry {
  std::string bundle_id;
  std::string display_name;
  std::string path;  // of the bundle, absolute
};

/// Every copy of every application that has windows and a place in the dock or task bar, in the
/// index's order. Blocks its caller for ten seconds at most; empty when there is no answer by then.
std::vector<InstalledAppEntry> InstalledApps();

}  // namespace deskhand
