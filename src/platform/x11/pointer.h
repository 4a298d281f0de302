// The mouse pointer's picture, and drawing it into a screenshot.
// Space: see monitors.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include <xcb/xfixes.h>

#include "platform/x11/monitors.h"

namespace deskhand::platform {

/// Draws `pointer` over the pixels of `area`: 4 bytes each, rows `stride` bytes apart. What lies
/// outside of the area is left out.
void DrawPointer(xcb_xfixes_get_cursor_image_reply_t& pointer, const PixelRect& area,
                 uint8_t* pixels, size_t stride);

}  // namespace deskhand::platform
