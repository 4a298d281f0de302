// The windows of the screen, as far as they show or name an application.
// Space: pixels of the root window, origin at its top-left corner, y down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/application_identity.h"
#include "platform/x11/pixel_rect.h"

namespace deskhand::platform {

/// A child of the root window: a frame of a window manager, or a window without one.
struct TopWindow {
  xcb_window_t id = XCB_NONE;
  PixelRect bounds = {};  // border included
  int32_t border_px = 0;
  uint8_t depth = 0;
  xcb_visualid_t visual = 0;
  uint32_t opacity = UINT32_MAX;  // _NET_WM_WINDOW_OPACITY: of UINT32_MAX
  bool is_unclaimed = false;      // a window manager's, and whatever client it had is not known
  bool is_drawable = false;       // not for input only
  bool is_shown = false;          // drawable and viewable
};

/// What a window is for, as far as it decides about its place among the others; see
/// _NET_WM_WINDOW_TYPE of the Extended Window Manager Hints.
enum class WindowType : uint8_t { kOrdinary, kDesktop, kDock, kMenu, kNotification };

/// Widths of a window's four margins, in pixels.
struct Margins {
  int32_t left = 0, right = 0, top = 0, bottom = 0;
  bool operator==(const Margins&) const = default;
};

/// WM_STATE, see the ICCCM, section 4.1.3.1.
enum class WindowState : uint8_t { kWithdrawn = 0, kNormal = 1, kIconic = 3 };

/// What a window is to its user. Known where a watch looks for it.
struct WindowRole {
  WindowType type = WindowType::kOrdinary;
  bool is_override_redirect = false;  // no window manager has a say in it
  WindowState state = WindowState::kWithdrawn;
  bool is_minimized = false;          // _NET_WM_STATE_HIDDEN
  bool is_put_away = false;           // by hiding its application, and not shown again since
  std::optional<Margins> frame = {};  // _NET_FRAME_EXTENTS: what the window manager draws around it
  Margins shadow = {};                // _GTK_FRAME_EXTENTS: of it, what is no part of the window
};

/// A window that may tell of its application: every top-level window, and of those inside of them
/// the ones that have a name or were made by another client than their parent.
struct ApplicationWindow {
  xcb_window_t id = XCB_NONE;
  size_t top = 0;  // index of the top-level window that it is, or lies in
  WindowFacts facts = {};
  bool is_local = true;                   // its program runs on this machine
  uint32_t client = 0;                    // the connection that made it
  xcb_window_t transient_for = XCB_NONE;  // WM_TRANSIENT_FOR
  bool is_managed = false;                // has WM_STATE: a window manager put it into its frame
  bool is_viewable = false;
  PixelRect bounds = {};  // border included
  WindowRole role = {};

  bool has_name() const {
    return !facts.wm_class.empty() || !facts.wm_instance.empty() ||
           !facts.gtk_application_id.empty();
  }
};

/// What a window has told that does not tell it any more, of a connection that has others.
struct FormerName {
  uint32_t client = 0;
  WindowFacts facts = {};
};

struct WindowTree {
  std::vector<TopWindow> tops;                  // bottom to top
  std::vector<ApplicationWindow> applications;  // each top-level window before those inside of it
  std::vector<FormerName> former_names;
  bool is_composited = false;  // a compositing manager has announced itself
  // Whether the server answered every question. Unless it is grabbed, a window may go before it is
  // asked about.
  bool is_complete = true;
};

}  // namespace deskhand::platform
