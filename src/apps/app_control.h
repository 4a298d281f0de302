// Opening, hiding and showing applications by their bundle identifiers, which are compared exactly.
#pragma once

#include <string>
#include <vector>

namespace deskhand {

/// Launches the application, or brings it forward when it runs; whether that was done within ten
/// seconds. Blocks its caller for as long. Thread: a worker-pool thread, inside a call scope.
bool OpenByBundleId(const std::string& bundle_id);

// Every running instance of the applications is asked to hide, unless it is hidden, or to show
// itself again, if it is. Whether it does is not known. Threads: the JavaScript threads, inside a
// call scope.

void HideByBundleId(const std::vector<std::string>& bundle_ids);
void UnhideByBundleId(const std::vector<std::string>& bundle_ids);

}  // namespace deskhand
