// Which windows a picture leaves out, given what windows tell of their applications.
// Space: pixels of the root window. Pure; any thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// What to do with one top-level window.
struct Exclusion {
  bool is_whole = false;         // frame and all
  std::vector<PixelRect> parts;  // windows of others that it holds: nothing is behind those
  bool any() const { return is_whole || !parts.empty(); }
};

using BundleIdOf = std::function<std::optional<std::string>(const WindowFacts&)>;

/// One for each top-level window of `tree`.
///
/// A top-level window belongs to the application of the client that a window manager put into it,
/// else to its own. A window that no application can be told of (menus and tooltips often name
/// none) goes the way of the window that it is transient for; else of those of its connection and
/// its process: it is left out when one of them is, or was.
std::vector<Exclusion> PlanExclusions(const WindowTree& tree,
                                      const std::vector<std::string>& bundle_ids,
                                      const BundleIdOf& bundle_id_of);

/// Whether any window on the screen is left out, wholly or in part.
bool HasShown(const WindowTree& tree, const std::vector<Exclusion>& exclusions);

}  // namespace deskhand::platform
