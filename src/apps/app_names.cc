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

std::optional<std::string> IdentifierOf(const platform::BundleRef& bundle) {
  return bundle ? platform::BundleId(*bundle) : std::nullopt;
}

/// What is at `path`, if anywhere, by the system's name for it, else by `name`.
ResolvedApp Describe(std::string bundle_id, const std::optional<std::string>& path,
                     const std::string& name) {
  std::optional<std::string> display_name;
  if (path) display_name = platform::DisplayNameAtPath(*path);
  return {std::move(bundle_id), display_name.value_or(name)};
}

std::optional<ResolvedApp> AppWithBundleId(const std::string& bundle_id) {
  const auto location = platform::LocationOfApplication(bundle_id);
  if (!location) return std::nullopt;
  auto found = IdentifierOf(platform::BundleAt(*location));
  if (!found) return std::nullopt;
  return Describe(std::move(*found), platform::PathOf(*location), bundle_id);
}

std::optional<ResolvedApp> AppInFolders(const std::string& name) {
  for (const std::string& folder : platform::ApplicationFolders()) {
    const std::string path = platform::PathInFolder(folder, name);
    if (!platform::PathExists(path)) continue;
    if (auto found = IdentifierOf(platform::BundleAtPath(path))) {
      return Describe(std::move(*found), path, name);
    }
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
