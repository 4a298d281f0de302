#include "platform/x11/exclusion.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "platform/x11/application_identity.h"
#include "platform/x11/canvas.h"
#include "platform/x11/composition.h"
#include "platform/x11/exclusion_plan.h"
#include "platform/x11/server_grab.h"
#include "platform/x11/window_tree.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// How long a picture waits for programs to paint what was hidden. One taken sooner lacks contents,
// and shows nothing that it must not.
constexpr std::chrono::milliseconds kRepaintTime{250};

// The last attempt makes do with what there is: windows that open all the time must not delay a
// picture for ever.
constexpr int kMostAttempts = 5;

// Keeping the contents of windows costs memory and time of all that is drawn.
constexpr std::chrono::minutes kIdleTime{5};
constexpr std::chrono::seconds kEventPeriod{1};

ApplicationIdentities& Identities() {
  static ApplicationIdentities& identities = *new ApplicationIdentities;
  return identities;
}

/// Takes the events of watched windows now and then, which the server would have to keep otherwise,
/// and gives the connection up when no window has been left out for a while.
void Attend(const std::weak_ptr<Link>& watched) {
  CaptureThread().RunAt(Clock::now() + kEventPeriod, [watched] {
    const std::shared_ptr<Link> link = watched.lock();
    if (!link || link != CaptureChannel().link) return;
    Session session(CaptureChannel(), Clock::now() + kEventPeriod);
    if (!session || &session.link() != link.get()) return;
    if (Clock::now() - link->window_watch->last_used() > kIdleTime) {
      session.Abandon();
    } else {
      Attend(watched);
    }
  });
}

struct Attempt {
  Grab grab = {};
  bool must_wait = false;  // first, programs are to paint what will be seen
  // First, it is to be found out which applications these are of: that takes reading files, also
  // those of other processes, which can block.
  bool must_look = false;
  std::vector<ApplicationWindow> windows = {};
};

Attempt Fail(const Session& session, const char* reason) {
  std::string lost = session.error();
  Attempt attempt;
  attempt.grab.error = lost.empty() ? reason : std::move(lost);
  return attempt;
}

/// The same, where the connection is not what it was: XCB remembers that a question about an
/// extension went wrong, and it may be unknown what is left in which window.
Attempt GiveUp(Session& session, const char* reason) {
  session.Abandon();
  return Fail(session, reason);
}

std::optional<std::string> Identify(const WindowFacts& facts) {
  return Identities().BundleIdOf(facts);
}

/// One attempt, in one grab of the server. One that `must_succeed` does without help from outside.
Attempt Try(const std::vector<std::string>& bundle_ids, Session& session, const PixelRect& area,
            bool with_pointer, bool must_succeed) {
  const ServerGrab server_grab(session);
  Link& link = session.link();
  const auto described = link.window_watch->Query(session);
  const WindowTree& tree = *described;
  if (!tree.is_complete) return Fail(session, "the X server refused to describe its windows");
  if (link.window_watch->has_news() && !must_succeed) {
    return {.must_look = true, .windows = tree.applications};
  }
  const auto exclusions = PlanExclusions(tree, bundle_ids, Identify);
  const bool has_shown = HasShown(tree, exclusions);
  if (!has_shown && !link.composition) return {.grab = GrabScreen(session, area, with_pointer)};
  if (!link.composition) {
    link.composition = Composition::Start(session, tree);
    if (!link.composition) return GiveUp(session, "the X server cannot leave windows out");
  }
  if (!link.composition->Clean(session, tree, exclusions, area)) {
    return GiveUp(session, "the X server refused to leave windows out");
  }
  if (link.composition->repainting().is_waiting() && !must_succeed) return {.must_wait = true};
  // A compositing manager may still show what was there a moment ago.
  if (!has_shown && !tree.is_composited) return {.grab = GrabScreen(session, area, with_pointer)};
  const auto source = [&](const PixelRect& wanted, const PixelFormat& format) {
    return DrawWithout(session, link.composition->canvas_support(), tree, exclusions, wanted,
                       format);
  };
  return {.grab = GrabFrom(source, session, area, with_pointer)};
}

}  // namespace

Grab GrabWithout(const std::vector<std::string>& bundle_ids, Session& session,
                 const PixelRect& area, bool with_pointer) {
  if (bundle_ids.empty()) return GrabScreen(session, area, with_pointer);
  Link& link = session.link();
  if (!link.window_watch) {
    link.window_watch = WindowWatch::Start(session, Detail::kNone);
    if (!link.window_watch) {
      return GiveUp(session, "the X server refused to describe its windows").grab;
    }
    Attend(CaptureChannel().link);
  }
  Identities().Refresh();
  for (int attempts = 1;; ++attempts) {
    Attempt attempt = Try(bundle_ids, session, area, with_pointer, attempts == kMostAttempts);
    for (const ApplicationWindow& window : attempt.windows) Identify(window.facts);
    if (link.composition) {
      // Also where nobody waits any more: what they watched is given back.
      link.composition->repainting().Await(
          session, attempt.must_wait ? kRepaintTime : Clock::duration::zero());
    }
    if (!attempt.must_wait && !attempt.must_look) return std::move(attempt.grab);
  }
}

}  // namespace deskhand::platform
