// Rectangles as requests take them.
#pragma once

#include <cstdint>

#include <xcb/xcb.h>

#include "platform/x11/pixel_rect.h"

namespace deskhand::platform {

/// `rect` must fit into the protocol's 16 bits.
inline xcb_rectangle_t ToRectangle(const PixelRect& rect) {
  return {static_cast<int16_t>(rect.x), static_cast<int16_t>(rect.y),
          static_cast<uint16_t>(rect.width), static_cast<uint16_t>(rect.height)};
}

}  // namespace deskhand::platform
