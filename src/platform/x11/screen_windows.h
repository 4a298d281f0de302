// The windows that there are for the user, whether he sees them at the moment or not.
// Space: pixels of the root window. Pure; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// A top-level window with the frame that a window manager drew around it.
struct ScreenWindow {
  xcb_window_t id = XCB_NONE;   // the program's own
  xcb_window_t top = XCB_NONE;  // the child of the root window: the same, or the frame
  size_t speaker = 0;           // the index among the tree's applications of the program's own
  PixelRect bounds = {};        // as the user sees it: frame included, shadow not
  float alpha = 1;              // from 0, which cannot be seen, to 1
  int32_t layer = 0;            // see LayerOf
  bool is_desktop = false;      // the desktop itself, with its icons
  bool is_managed = false;      // a window manager has it, or had it last
  bool is_ordinary = false;     // of layer 0
  bool is_shown = false;
  bool is_hidden = false;    // iconified, or put away with its application
  bool is_put_away = false;  // the latter: it was hidden with its application
};

/// 0 for ordinary windows, dialogs and utilities; otherwise, from bottom to top, that of desktops,
/// of docks, of menus and tooltips, of notifications, and of all others that override the window
/// manager.
int32_t LayerOf(const WindowRole& role);

/// Those of `tree`, bottom to top. Left out are withdrawn ones, those for input only, and those of
/// a single pixel, which programs keep for other purposes. `manager`: the connection of a
/// window manager that tells which windows are minimized, 0 when there is none; its own windows are
/// left out: they are frames that have no window yet, or no more.
std::vector<ScreenWindow> FindScreenWindows(const WindowTree& tree, uint32_t manager);

using IsKnown = std::function<bool(const ApplicationWindow&)>;

/// The index among the tree's applications of the window that tells which application `speaker`
/// belongs to: itself when it is known; else the one that it is transient for; else one of its
/// connection, or of its process; else itself.
size_t FindNamer(const WindowTree& tree, size_t speaker, const IsKnown& is_known);

}  // namespace deskhand::platform
