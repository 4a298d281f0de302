// One look at the windows of the screen and the applications that they belong to.
// Space: pixels of the root window. Thread: the session's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/applications.h"
#include "platform/x11/screen_windows.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

struct RunningApplication {
  std::optional<std::string> bundle_id = {};
  std::optional<std::string> name = {};
  int32_t process_id = 0;                  // 0 when it is of another machine, or not known
  bool is_shown_in_menus = true;           // or has no entry that could say otherwise
  std::vector<ScreenWindow> windows = {};  // its ordinary ones, front to back
};

/// All ordinary windows are hidden, and there is one.
bool IsHiddenWholly(const RunningApplication& application);

struct DesktopLook {
  /// What it was made of: the windows, and the generation of the applications' directory.
  std::shared_ptr<const WindowTree> tree = nullptr;
  uint64_t generation = 0;
  /// Front to back.
  std::vector<ScreenWindow> windows = {};
  /// The application of each.
  std::vector<RunningApplicationRef> owners = {};
  /// By process and bundle identifier.
  std::vector<RunningApplicationRef> applications = {};
};

/// Null when the server does not answer. Takes one answer's time, and more only for windows that
/// are new or changed.
std::shared_ptr<const DesktopLook> LookAtDesktop(Session& session);

/// The application that the active window belongs to, or, without a window manager, the window with
/// the keyboard focus; null when there is none.
RunningApplicationRef ActiveApplication(const Session& session, const DesktopLook& look);

/// For questions about applications and windows: the JavaScript thread waits for the answers.
constexpr std::chrono::seconds kLongestQuestion{2};

}  // namespace deskhand::platform
