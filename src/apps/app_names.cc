#include "apps/app_names.h"

#include <utility>

#include "platform/applications.h"
#include "platform/bundles.h"

namespace deskhand {
namespace {

std::optional<ResolvedApp> RunningAppCalled(const std::string& name) {
  const std::string wanted = platform::LowerCase(name);
  for (const auto& application : platform::RunningApplications()) {
    auto bundle_id = platform::BundleId(*application);
    if (!bundle_id) continue;
    auto localized_name = platform::LocalizedName(*application);
    if (!localized_name || platform::LowerCase(*localized_name) != wanted) continue;
    return ResolvedApp{std::move(*bundle_id), std::move(*localized_name)};
  }
  return std::nullopt;
}

/// `path` is where `bundle` lies, if anywhere; `name` stands in for a display name.
std::optional<ResolvedApp> Describe(const platform::BundleRef& bundle,
                                    const std::optional<std::string>& path,
                                    const std::string& name) {
  if (!bundle) return std::nullopt;
  auto bundle_id = platform::BundleId(*bundle);
  if (!bundle_id) return std::nullopt;
  std::optional<std::string> display_name;
  if (path) display_name = platform::DisplayNameAtPath(*path);
  return ResolvedApp{std::move(*bundle_id), display_name.value_or(name)};
}

std::optional<ResolvedApp> AppWithBundleId(const std::string& bundle_id) {
  const auto location = platform::LocationOfApplication(bundle_id);
  if (!location) return std::nullopt;
  return Describe(platform::BundleAt(*location), platform::PathOf(*location), bundle_id);
}

std::optional<ResolvedApp> AppInFolders(const std::string& name) {
  for (const std::string& folder : platform::ApplicationFolders()) {
    const std::string path = platform::PathInFolder(folder, name);
    if (!platform::PathExists(path)) continue;
    if (auto app = Describe(platform::BundleAtPath(path), path, name)) return app;
  }
  return std::nullopt;
}

}  // namespace

std::optional<ResolvedApp> ResolveApp(const std::string& name) {
  if (auto app = RunningAppCalled(name)) return app;
  if (auto app = AppWithBundleId(name)) return app;
  return AppInFolders(name);
}

}  // namespace deskhand
