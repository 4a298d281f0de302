// Asking the server about top-level windows and all that lies in them.
// Space: pixels of the root window. Thread: the session's.
#pragma once

#include <vector>

#include "platform/x11/session.h"
#include "platform/x11/window_support.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// One top-level window.
struct Subtree {
  TopWindow window;
  std::vector<ApplicationWindow> applications = {};  // the window itself first
  std::vector<xcb_window_t> nodes = {};              // every window of it
  bool is_complete = true;                           // the server answered every question
};

/// What is asked of windows besides what tells of their applications.
enum class Detail : uint8_t { kNone, kRoles };

/// Asks about these windows, which all are children of the root window, and selects events of every
/// window that it meets, so that whatever changes later makes one. `manager` is the connection of
/// the window manager.
std::vector<Subtree> QuerySubtrees(const Session& session, const WindowSupport& support,
                                   Detail detail, uint32_t manager,
                                   const std::vector<xcb_window_t>& tops);

/// The connection that made a window.
uint32_t ClientOf(xcb_connection_t* connection, xcb_window_t window);

}  // namespace deskhand::platform
