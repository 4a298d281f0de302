#include "platform/applications.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <unistd.h>

#include "platform/x11/application_directory.h"
#include "platform/x11/desktop_look.h"
#include "platform/x11/launched_processes.h"
#include "platform/x11/opening.h"
#include "platform/x11/window_requests.h"

namespace deskhand::platform {
namespace {

using Request = void (*)(const Session&, const std::vector<ScreenWindow>&);

void Send(Request request, const RunningApplication& application) {
  if (application.windows.empty()) return;
  const Session session(QueryChannel(), Clock::now() + kLongestQuestion);
  if (session) request(session, application.windows);
}

/// Adds those that were started from desktop entries and have no windows, in the same order.
std::vector<RunningApplicationRef> WithLaunched(std::vector<RunningApplicationRef> applications) {
  const auto process_of = [](const RunningApplicationRef& application) {
    return application->process_id;
  };
  const uint64_t generation = ApplicationDirectory::Get().Refresh();
  for (LaunchedProcess& launched : LaunchedProcesses::Get().Running(generation)) {
    const auto place = std::ranges::lower_bound(applications, launched.process_id, {}, process_of);
    if (place != applications.end() && process_of(*place) == launched.process_id) continue;
    applications.insert(place, std::make_shared<RunningApplication>(RunningApplication{
                                   .bundle_id = std::move(launched.description.bundle_id),
                                   .name = std::move(launched.description.name),
                                   .process_id = launched.process_id,
                                   .is_shown_in_menus = launched.description.is_shown}));
  }
  return applications;
}

}  // namespace

std::vector<RunningApplicationRef> RunningApplications() {
  Session session(QueryChannel(), Clock::now() + kLongestQuestion);
  if (!session) return {};
  const auto look = LookAtDesktop(session);
  if (!look) return {};
  return WithLaunched(look->applications);
}

RunningApplicationRef FrontmostApplication() {
  Session session(QueryChannel(), Clock::now() + kLongestQuestion);
  if (!session) return nullptr;
  const auto look = LookAtDesktop(session);
  return look ? ActiveApplication(session, *look) : nullptr;
}

bool IsRegular(const RunningApplication& application) {
  return !application.windows.empty() && application.is_shown_in_menus;
}

std::optional<std::string> BundleId(const RunningApplication& application) {
  return application.bundle_id;
}

std::optional<std::string> LocalizedName(const RunningApplication& application) {
  return application.name;
}

int32_t ProcessId(const RunningApplication& application) { return application.process_id; }

bool IsHidden(const RunningApplication& application) { return IsHiddenWholly(application); }

void Hide(const RunningApplication& application) { Send(HideWindows, application); }

void Unhide(const RunningApplication& application) { Send(ShowWindows, application); }

void OpenApplication(const ApplicationLocation& location, OpenHandler handler) {
  StartOpening(location, std::move(handler));
}

void Activate(const RunningApplication& application) {
  if (application.windows.empty()) return;
  const Session session(QueryChannel(), Clock::now() + kLongestQuestion);
  // After a lost connection nothing is known of the windows any more.
  if (session && session.link().window_watch) BringForward(session, application.windows);
}

int32_t OwnProcessId() { return getpid(); }

}  // namespace deskhand::platform
