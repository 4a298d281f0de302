// A screen whose windows all have their contents in memory of their own, covered ones too, so that
// it can be put together anew without some of them (XComposite, automatic redirection).
// Space: pixels of the root window. Thread: the capture thread.
#pragma once

#include <memory>
#include <set>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/canvas.h"
#include "platform/x11/exclusion_plan.h"
#include "platform/x11/leftovers.h"
#include "platform/x11/repainting.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

class Composition {
 public:
  /// Has the server keep contents for as long as the connection lasts; `tree` is what there is. The
  /// server must be grabbed. Null when it cannot, or does not answer.
  static std::unique_ptr<Composition> Start(const Session& session, const WindowTree& tree);

  /// Takes notice of an event of the connection.
  void Handle(const xcb_generic_event_t& event);

  /// Removes from the windows in `area` that are to be seen whatever those to be left out may have
  /// left in them, and asks their programs to paint there anew. Nothing is left, whatever a program
  /// then does. The server must be grabbed, and `tree` be of this grab. False when the server
  /// refused.
  bool Clean(const Session& session, const WindowTree& tree,
             const std::vector<Exclusion>& exclusions, const PixelRect& area);

  Repainting& repainting() { return repainting_; }
  const CanvasSupport& canvas_support() const { return canvas_support_; }

 private:
  Composition(const Session& session, CanvasSupport canvas_support, uint8_t damage_event);

  void Handle(const xcb_create_notify_event_t& event);
  void Handle(const xcb_configure_notify_event_t& event);
  void Reconcile(const WindowTree& tree, const std::set<xcb_window_t>& distrusted);
  std::vector<PixelRect> FindLeftovers(const WindowTree& tree,
                                       const std::vector<Exclusion>& exclusions, size_t top);

  const xcb_window_t root_;
  const uint32_t client_mask_;
  const uint32_t own_client_;
  const CanvasSupport canvas_support_;
  Repainting repainting_;
  Leftovers leftovers_;
  bool was_composited_ = false;
  // Shown since before the composition began: what has been where they are is not known.
  std::set<xcb_window_t> unproven_;
};

}  // namespace deskhand::platform
