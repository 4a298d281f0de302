#include "platform/x11/desktop_look.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "platform/x11/active_window.h"
#include "platform/x11/window_owners.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// A window may go between the look at the list and the questions about it.
constexpr int kMostAttempts = 3;

// The server keeps events for us until we take them.
constexpr std::chrono::seconds kEventPeriod{1};
constexpr std::chrono::minutes kIdleTime{5};

/// Takes the events of watched windows now and then, and gives the connection up when nobody has
/// asked about windows for a while.
void Attend(const std::weak_ptr<Link>& watched) {
  ApplicationThread().RunAt(Clock::now() + kEventPeriod, [watched] {
    Session session(QueryChannel(), Clock::now() + kEventPeriod);
    const std::shared_ptr<Link> link = watched.lock();
    if (!session || &session.link() != link.get()) return;
    if (Clock::now() - link->window_watch->last_used() > kIdleTime) {
      session.Abandon();
    } else {
      Attend(watched);
    }
  });
}

bool StartWatch(Session& session) {
  Link& link = session.link();
  if (link.window_watch) return true;
  link.window_watch = WindowWatch::Start(session, Detail::kRoles);
  if (!link.window_watch) {
    // XCB remembers that a question about an extension went wrong.
    session.Abandon();
    return false;
  }
  link.window_owners = std::make_unique<WindowOwners>();
  Attend(QueryChannel().link);
  return true;
}

std::shared_ptr<const WindowTree> QueryWindows(const Session& session) {
  std::shared_ptr<const WindowTree> tree;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    tree = session.link().window_watch->Query(session);
    if (!session.error().empty()) return nullptr;
    if (tree->is_complete) break;
  }
  return tree;
}

using ApplicationKey = std::pair<int32_t, std::optional<std::string>>;  // process, bundle id

class Sorter {
 public:
  Sorter(const WindowTree& tree, WindowOwners* owners) : tree_(tree), owners_(owners) {}

  DesktopLook Sort(std::vector<ScreenWindow> windows) {
    std::reverse(windows.begin(), windows.end());
    std::vector<std::shared_ptr<RunningApplication>> owners;
    for (const ScreenWindow& window : windows) {
      owners.push_back(OwnerOf(window));
      if (window.is_ordinary) owners.back()->windows.push_back(window);
    }
    DesktopLook look{.windows = std::move(windows), .owners = {owners.begin(), owners.end()}};
    for (const auto& [key, application] : applications_) look.applications.push_back(application);
    return look;
  }

 private:
  std::shared_ptr<RunningApplication> OwnerOf(const ScreenWindow& window) {
    const size_t namer = FindNamer(tree_, window.speaker, [this](const ApplicationWindow& other) {
      return owners_->Of(other).bundle_id.has_value();
    });
    const ApplicationDescription& description = owners_->Of(tree_.applications[namer]);
    uint32_t process = tree_.applications[window.speaker].facts.process_id;
    if (process == 0) process = tree_.applications[namer].facts.process_id;
    const auto process_id = static_cast<int32_t>(process);
    auto& application = applications_[{process_id, description.bundle_id}];
    if (!application) {
      application = std::make_shared<RunningApplication>(
          RunningApplication{.bundle_id = description.bundle_id,
                             .name = description.name,
                             .process_id = process_id,
                             .is_shown_in_menus = description.is_shown});
    }
    return application;
  }

  const WindowTree& tree_;
  WindowOwners* const owners_;
  std::map<ApplicationKey, std::shared_ptr<RunningApplication>> applications_;
};

}  // namespace

bool IsHiddenWholly(const RunningApplication& application) {
  return !application.windows.empty() &&
         std::all_of(application.windows.begin(), application.windows.end(),
                     [](const ScreenWindow& window) { return window.is_hidden; });
}

std::shared_ptr<const DesktopLook> LookAtDesktop(Session& session) {
  if (!StartWatch(session)) return nullptr;
  Link& link = session.link();
  const auto tree = QueryWindows(session);
  if (!tree) return nullptr;
  const uint64_t generation = link.window_owners->Refresh(*tree);
  const auto& last = link.desktop_look;
  if (last && last->tree == tree && last->generation == generation) return last;
  const uint32_t manager = link.window_watch->manager();
  auto look = Sorter(*tree, link.window_owners.get()).Sort(FindScreenWindows(*tree, manager));
  look.tree = tree;
  look.generation = generation;
  link.desktop_look = std::make_shared<const DesktopLook>(std::move(look));
  return link.desktop_look;
}

RunningApplicationRef ActiveApplication(const Session& session, const DesktopLook& look) {
  const auto active = ActiveWindow(session);
  if (!active) return nullptr;
  const xcb_window_t top = session.link().window_watch->TopOf(*active);
  for (size_t index = 0; index < look.windows.size(); ++index) {
    if (look.windows[index].top == top) return look.owners[index];
  }
  return nullptr;
}

}  // namespace deskhand::platform
