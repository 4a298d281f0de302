#include "apps/app_control.h"

#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>

#include "addon/main_queue_work.h"
#include "platform/applications.h"
#include "platform/bundles.h"

namespace deskhand {
namespace {

using platform::RunningApplication;
using platform::RunningApplicationRef;

void StartOpening(const std::string& bundle_id,
                  const std::shared_ptr<Completion<bool>>& completion) {
  const auto location = platform::LocationOfApplication(bundle_id);
  if (!location) return completion->Succeed(false);
  platform::OpenApplication(*location, [completion](const RunningApplicationRef& application,
                                                    const std::optional<std::string>& error) {
    const bool is_open = application && !error;
    if (is_open) platform::Activate(*application);
    completion->Succeed(is_open);
  });
}

template <class Action>
void ForEachRunning(const std::vector<std::string>& bundle_ids, Action action) {
  const std::unordered_set<std::string> wanted(bundle_ids.begin(), bundle_ids.end());
  for (const auto& application : platform::RunningApplications()) {
    const auto bundle_id = platform::BundleId(*application);
    if (bundle_id && wanted.contains(*bundle_id)) action(*application);
  }
}

}  // namespace

bool OpenByBundleId(const std::string& bundle_id) {
  const auto outcome = RunOnMainQueue<bool>(
      [bundle_id](const auto& completion) { StartOpening(bundle_id, completion); });
  return outcome && outcome->value.value_or(false);
}

void HideByBundleId(const std::vector<std::string>& bundle_ids) {
  ForEachRunning(bundle_ids, [](const RunningApplication& application) {
    if (!platform::IsHidden(application)) platform::Hide(application);
  });
}

void UnhideByBundleId(const std::vector<std::string>& bundle_ids) {
  ForEachRunning(bundle_ids, [](const RunningApplication& application) {
    if (platform::IsHidden(application)) platform::Unhide(application);
  });
}

}  // namespace deskhand
