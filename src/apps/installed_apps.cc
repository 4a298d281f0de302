#include "apps/installed_apps.h"

#include <memory>
#include <optional>
#include <utility>

#include "addon/main_queue_work.h"
#include "platform/bundles.h"

namespace deskhand {
namespace {

using IndexCompletion = Completion<platform::IndexedApplicationsRef>;

/// None for what is no application that a user would open.
std::optional<InstalledAppEntry> EntryAt(const platform::IndexedApplications& applications,
                                         size_t index) {
  auto path = platform::PathAt(applications, index);
  auto display_name = platform::DisplayNameAt(applications, index);
  if (!path || !display_name) return std::nullopt;
  const auto bundle = platform::BundleAtPath(*path);
  if (!bundle) return std::nullopt;
  auto bundle_id = platform::BundleId(*bundle);
  if (!bundle_id || platform::IsBackgroundOnly(*bundle) || platform::IsAgent(*bundle)) {
    return std::nullopt;
  }
  return InstalledAppEntry{std::move(*bundle_id), std::move(*display_name), std::move(*path)};
}

}  // namespace

std::vector<InstalledAppEntry> InstalledApps() {
  const auto outcome = RunOnMainQueue<platform::IndexedApplicationsRef>(
      [](const std::shared_ptr<IndexCompletion>& completion) {
        platform::QueryApplicationIndex([completion](platform::IndexedApplicationsRef found) {
          completion->Succeed(std::move(found));
        });
      });
  std::vector<InstalledAppEntry> entries;
  if (!outcome || !outcome->value || !*outcome->value) return entries;
  const platform::IndexedApplications& applications = **outcome->value;
  const size_t count = platform::CountOf(applications);
  for (size_t index = 0; index < count; ++index) {
    if (auto entry = EntryAt(applications, index)) entries.push_back(std::move(*entry));
  }
  return entries;
}

}  // namespace deskhand
