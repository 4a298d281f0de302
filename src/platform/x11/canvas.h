// Drawing what is to be seen of a screen without some of its windows.
// Space: pixels of the root window. Thread: the capture thread.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include <xcb/render.h>
#include <xcb/xcb.h>

#include "platform/x11/exclusion_plan.h"
#include "platform/x11/grab.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// What a server needs to be told, or tells, once for each connection.
struct CanvasSupport {
  struct Format {
    xcb_render_pictformat_t id = 0;
    bool has_alpha = false;
  };
  std::map<xcb_visualid_t, Format> formats;  // those of XRender
  bool has_shared_pixmaps = false;           // it can draw into shared memory
};

/// None when the server lacks what drawing takes, or does not answer.
std::optional<CanvasSupport> QueryCanvasSupport(const Session& session);

/// Draws `area`. The server must be grabbed, all windows be redirected, `tree` and `exclusions` be
/// of this grab.
///
/// Where nobody composites the screen, it is copied as it is, and only what windows left out cover
/// is drawn anew. A compositing manager may show shadows, or pictures of earlier moments; then
/// nothing is taken from the screen itself.
RawImage DrawWithout(const Session& session, const CanvasSupport& support, const WindowTree& tree,
                     const std::vector<Exclusion>& exclusions, const PixelRect& area,
                     const PixelFormat& format);

}  // namespace deskhand::platform
