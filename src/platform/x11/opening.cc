#include "platform/x11/opening.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <unistd.h>

#include "platform/call_scope.h"
#include "platform/x11/desktop_look.h"
#include "platform/x11/launching.h"
#include "platform/x11/startup_notification.h"
#include "platform/x11/window_requests.h"

namespace deskhand::platform {
namespace {

// Nobody waits for longer.
constexpr std::chrono::seconds kLongestOpening{10};
constexpr std::chrono::milliseconds kLookPeriod{20};
// A window manager that has not granted a request by then may have been too early for it.
constexpr std::chrono::milliseconds kRequestPeriod{500};

class Opening : public std::enable_shared_from_this<Opening> {
 public:
  Opening(ApplicationLocation location, OpenHandler handler)
      : location_(std::move(location)), handler_(std::move(handler)) {}

  /// Looks once, does what is next, and comes back later unless that was all.
  void GoOn() {
    const Deadline now = Clock::now();
    if (now > give_up_) return EndStartup();
    const Progress progress = Look(now);
    switch (progress.step) {
      case Step::kWait:
        ApplicationThread().RunAt(Clock::now() + kLookPeriod,
                                  [self = shared_from_this()] { self->GoOn(); });
        return;
      case Step::kLaunch:
        return Launch(progress);
      case Step::kEnd:
        EndStartup();
        const CallScope scope;
        handler_(progress.application, progress.error);
        return;
    }
  }

 private:
  enum class Step { kWait, kLaunch, kEnd };

  struct Progress {
    Step step = Step::kWait;
    RunningApplicationRef application = nullptr;
    std::optional<std::string> error = std::nullopt;
    std::string display = {};
    xcb_timestamp_t time = 0;
  };

  static Progress Fail(std::string error) {
    return {.step = Step::kEnd, .error = std::move(error)};
  }

  Progress Look(Deadline now) {
    Session session(QueryChannel(), now + kLongestQuestion);
    if (!session) return Fail(session.error());
    const auto look = LookAtDesktop(session);
    if (!look) return Fail(session.error());
    const RunningApplicationRef active = ActiveApplication(session, *look);
    if (active && IsIt(*active)) return {.step = Step::kEnd, .application = active};
    const auto foremost = std::find_if(look->owners.begin(), look->owners.end(),
                                       [this](const RunningApplicationRef& owner) {
                                         return !owner->windows.empty() && IsIt(*owner);
                                       });
    if (foremost != look->owners.end()) {
      if (now >= next_request_) {
        BringForward(session, (*foremost)->windows);
        next_request_ = now + kRequestPeriod;
      }
      return {};
    }
    if (is_launched_) return {};
    if (location_.file.empty()) return Fail("no application is called " + location_.bundle_id);
    return {.step = Step::kLaunch, .display = session.link().display, .time = ServerTime(session)};
  }

  /// What was launched is it too, whatever it calls itself: a script that starts the program, or a
  /// terminal. All of that stays in the session that the first process leads.
  bool IsIt(const RunningApplication& application) const {
    if (application.windows.empty()) return false;
    if (application.bundle_id == location_.bundle_id) return true;
    const int32_t process = application.process_id;
    return launched_ != 0 && process > 0 && (process == launched_ || getsid(process) == launched_);
  }

  void Launch(const Progress& progress) {
    is_launched_ = true;
    LaunchResult result = LaunchEntry(
        location_.file, progress.display, progress.time, [this](const StartupSequence& sequence) {
          startup_ = sequence;
          const Session session(QueryChannel(), Clock::now() + kLongestQuestion);
          if (session) AnnounceStartup(session, sequence);
        });
    if (result.error) {
      EndStartup();
      const CallScope scope;
      return handler_(nullptr, result.error);
    }
    launched_ = result.process_id;
    GoOn();
  }

  /// Also for programs that do not say themselves that they have started.
  void EndStartup() {
    if (!startup_) return;
    const Session session(QueryChannel(), Clock::now() + kLongestQuestion);
    if (session) deskhand::platform::EndStartup(session, *startup_);
    startup_.reset();
  }

  const ApplicationLocation location_;
  const OpenHandler handler_;
  const Deadline give_up_ = Clock::now() + kLongestOpening;
  Deadline next_request_ = Deadline::min();
  bool is_launched_ = false;
  int32_t launched_ = 0;  // the process; 0 when another one was asked to start it
  std::optional<StartupSequence> startup_;
};

}  // namespace

void StartOpening(const ApplicationLocation& location, OpenHandler handler) {
  const auto opening = std::make_shared<Opening>(location, std::move(handler));
  ApplicationThread().Post([opening] { opening->GoOn(); });
}

}  // namespace deskhand::platform
