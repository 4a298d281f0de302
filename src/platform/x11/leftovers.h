// What the memory of a window may hold that is not the window's own.
// When a window of a composited screen is given memory, the X server first copies into it what the
// screen shows there, other windows included, see compNewPixmap in its composite/compalloc.c. A
// window without background keeps that until its program has painted over it.
// Space: pixels of the root window. Pure; one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/pixel_rect.h"

namespace deskhand::platform {

/// Follows the top-level windows of a screen, event by event, and knows of each which others may
/// have left pixels in it.
class Leftovers {
 public:
  /// A part of a window that another one has been in, at its present place.
  struct Part {
    PixelRect area;
    xcb_window_t source = XCB_NONE;  // none: of a window that has gone
    bool operator==(const Part&) const = default;
  };

  /// A window that exists; with its border.
  void Add(xcb_window_t window, const PixelRect& bounds);
  /// One that is shown, and of whose past nothing is known.
  void AddUnknown(xcb_window_t window, const PixelRect& bounds);
  void Remove(xcb_window_t window);
  bool Knows(xcb_window_t window) const { return windows_.contains(window); }

  /// Anything may be left anywhere in `window`.
  void Distrust(xcb_window_t window);
  /// The same for every window that was given memory since this, or TrustNew(), was last called.
  void DistrustNew();
  void TrustNew() { new_.clear(); }

  /// It was given memory: it was mapped.
  void OnShown(xcb_window_t window);
  /// All of them were, at one moment: the screen began to be composited.
  void OnAllShown(const std::vector<xcb_window_t>& windows);
  void OnHidden(xcb_window_t window);
  /// It was moved or resized. One of another size is given memory anew.
  void OnConfigured(xcb_window_t window, const PixelRect& bounds);

  /// What may be left in `window`, in the order of its coming.
  std::vector<Part> In(xcb_window_t window) const;

  /// Whatever `source` has left in `window` was painted over.
  void Forget(xcb_window_t window, xcb_window_t source);

 private:
  struct Window {
    PixelRect bounds;
    bool is_shown = false;
    std::vector<Part> parts = {};  // areas relative to the window's corner
  };

  void Allocate(xcb_window_t id, Window* window);
  bool IsShownIn(const PixelRect& area, xcb_window_t window) const;

  std::map<xcb_window_t, Window> windows_;
  std::set<xcb_window_t> new_;
};

}  // namespace deskhand::platform
