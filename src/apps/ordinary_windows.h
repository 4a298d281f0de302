// What the window list and the hit test have in common.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/geometry.h"
#include "platform/windows.h"

namespace deskhand {

/// Whether a window is another process's, an ordinary one, and to be seen at all. Asks for its
/// owner, its layer and its opacity, in this order, up to the first that says no.
bool IsOrdinaryWindow(const platform::WindowList& windows, size_t index, int32_t own_pid);

// The edges of a rectangle, whose width and height may be negative.
double MinX(const Rect& rect);
double MaxX(const Rect& rect);
double MinY(const Rect& rect);
double MaxY(const Rect& rect);

Point CentreOf(const Rect& rect);

}  // namespace deskhand
