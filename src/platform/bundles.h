// Applications as they are installed: where they are, and what they say of themselves there.
// An application's bundle is a folder with a description on macOS, and a desktop entry on X11.
// Texts are UTF-8, paths absolute. Threads: QueryApplicationIndex() as it says; all else any,
// inside a call scope.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace deskhand::platform {

/// Where an application is installed; each backend defines it.
struct ApplicationLocation;
using ApplicationLocationRef = std::shared_ptr<const ApplicationLocation>;

/// The place that the system prefers for this bundle identifier; null when it knows of none. On
/// X11, where an application need not be installed, one without a path may stand for one that runs.
ApplicationLocationRef LocationOfApplication(const std::string& bundle_id);

/// None when a location has no path.
std::optional<std::string> PathOf(const ApplicationLocation& location);

/// What is installed at a place; each backend defines it.
struct Bundle;
using BundleRef = std::shared_ptr<const Bundle>;

/// Null when there is no bundle.
BundleRef BundleAt(const ApplicationLocation& location);
BundleRef BundleAtPath(const std::string& path);

std::optional<std::string> BundleId(const Bundle& bundle);

/// Whether it says of itself that it never shows windows.
bool IsBackgroundOnly(const Bundle& bundle);

/// Whether it says of itself that it has windows, but no place in the dock or task bar.
bool IsAgent(const Bundle& bundle);

/// The folders that applications are looked for in by their names, in this order.
std::vector<std::string> ApplicationFolders();

/// Where an application of this very name would be in such a folder, whether it is there or not.
std::string PathInFolder(const std::string& folder, const std::string& name);

bool PathExists(const std::string& path);

/// What the user sees in place of the file name; none when the system gives nothing.
std::optional<std::string> DisplayNameAtPath(const std::string& path);

/// Letters in lower case, whatever their script.
std::string LowerCase(const std::string& text);

/// What the index of installed applications gave; each backend defines it.
struct IndexedApplications;
using IndexedApplicationsRef = std::shared_ptr<const IndexedApplications>;

size_t CountOf(const IndexedApplications& applications);
std::optional<std::string> PathAt(const IndexedApplications& applications, size_t index);
std::optional<std::string> DisplayNameAt(const IndexedApplications& applications, size_t index);

using IndexHandler = std::function<void(IndexedApplicationsRef applications)>;

/// Asks for all application bundles of this computer, every copy, in the index's order. Starts on
/// the main queue, which it does not block, and answers on any thread, once or never.
void QueryApplicationIndex(IndexHandler handler);

}  // namespace deskhand::platform
