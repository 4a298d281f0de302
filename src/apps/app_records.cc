#include "apps/app_records.h"

namespace deskhand {

AppInfo AppInfoOf(const platform::RunningApplication& application) {
  return {
      .bundle_id = platform::BundleId(application).value_or(""),
      .display_name = platform::LocalizedName(application).value_or(""),
      .pid = platform::ProcessId(application),
  };
}

std::vector<AppInfo> RunningApps() {
  std::vector<AppInfo> apps;
  for (const auto& application : platform::RunningApplications()) {
    if (!platform::IsRegular(*application) || !platform::BundleId(*application)) continue;
    apps.push_back(AppInfoOf(*application));
  }
  return apps;
}

std::optional<AppInfo> FrontmostApp() {
  const auto application = platform::FrontmostApplication();
  if (!application || !platform::BundleId(*application)) return std::nullopt;
  return AppInfoOf(*application);
}

}  // namespace deskhand
