// The windows on the screen.
// Space: points in the global desktop space, origin at the top-left corner of the primary display,
// y down; any number. Texts are UTF-8. Threads: any, inside a call scope.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/applications.h"
#include "platform/geometry.h"

namespace deskhand::platform {

/// The windows at one moment, front to back, without those of the desktop itself; each backend
/// defines it.
struct WindowList;
using WindowListRef = std::shared_ptr<const WindowList>;

/// Read anew on every call; null when the system gives none.
WindowListRef OnScreenWindows();

size_t CountOf(const WindowList& windows);

// What the list tells of the window at an index less than its count; none where it tells nothing,
// or nothing that makes sense.

std::optional<int32_t> OwnerProcessId(const WindowList& windows, size_t index);

/// 0 for ordinary windows; others for docks, menus, notifications and the like.
std::optional<int32_t> LayerOf(const WindowList& windows, size_t index);

/// From 0, which cannot be seen, to 1.
std::optional<float> AlphaOf(const WindowList& windows, size_t index);

std::optional<std::string> OwnerName(const WindowList& windows, size_t index);

/// Frames included.
std::optional<Rect> BoundsOf(const WindowList& windows, size_t index);

/// The running application that the window belongs to, looked up at the moment of the call; null
/// when there is none.
RunningApplicationRef OwnerOf(const WindowList& windows, size_t index);

}  // namespace deskhand::platform
