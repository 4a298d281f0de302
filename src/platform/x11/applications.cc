#include "platform/applications.h"

#include <unistd.h>

#include "platform/x11/desktop_look.h"
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

}  // namespace

std::vector<RunningApplicationRef> RunningApplications() {
  const Session session(QueryChannel(), Clock::now() + kLongestQuestion);
  if (!session) return {};
  auto look = LookAtDesktop(session);
  if (!look) return {};
  return std::move(look->applications);
}

RunningApplicationRef FrontmostApplication() {
  const Session session(QueryChannel(), Clock::now() + kLongestQuestion);
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
