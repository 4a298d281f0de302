// Running applications, opening them, and telling the system's user interface to hide or show them.
// Texts are UTF-8. Threads: OpenApplication() and Activate() as they say; all else any, inside a
// call scope.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/bundles.h"

namespace deskhand::platform {

/// A running application, which may end at any time; each backend defines it. One that has ended
/// keeps telling what it told, or tells nothing; requests to it do nothing.
struct RunningApplication;
using RunningApplicationRef = std::shared_ptr<const RunningApplication>;

/// All of them, the system's own and those without windows included, in the system's order.
std::vector<RunningApplicationRef> RunningApplications();

/// The one that gets key events; null when there is none.
RunningApplicationRef FrontmostApplication();

// What an application tells of itself, asked for at the moment of the call.

/// Whether it is an ordinary application with a place in the dock or task bar, and neither an
/// accessory nor a background process.
bool IsRegular(const RunningApplication& application);
std::optional<std::string> BundleId(const RunningApplication& application);
std::optional<std::string> LocalizedName(const RunningApplication& application);
int32_t ProcessId(const RunningApplication& application);
bool IsHidden(const RunningApplication& application);

// Requests; whether they are granted is not reported.

void Hide(const RunningApplication& application);
void Unhide(const RunningApplication& application);

/// `application` is null when none was opened; `error` is the system's description of what went
/// wrong.
using OpenHandler =
    std::function<void(RunningApplicationRef application, const std::optional<std::string>& error)>;

/// Launches the application at `location`, or brings it forward when it runs already. Starts on the
/// main queue, which it does not block, and answers on any thread, inside a call scope, once or
/// never.
void OpenApplication(const ApplicationLocation& location, OpenHandler handler);

/// Brings all of it before every other application. Thread: an OpenHandler's.
void Activate(const RunningApplication& application);

/// The process that this code runs in.
int32_t OwnProcessId();

}  // namespace deskhand::platform
