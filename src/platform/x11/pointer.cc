#include "platform/x11/pointer.h"

namespace deskhand::platform {
namespace {

/// `over` is premultiplied by its alpha, as the XFixes protocol says.
void Blend(uint32_t over, uint8_t* pixel) {
  const uint32_t transparency = 255 - (over >> 24);
  for (int channel = 0; channel < 3; ++channel) {
    const uint32_t colour = (over >> (8 * channel)) & 0xff;
    const uint32_t blended = colour + (pixel[channel] * transparency + 127) / 255;
    pixel[channel] = static_cast<uint8_t>(blended > 255 ? 255 : blended);
  }
}

}  // namespace

void DrawPointer(xcb_xfixes_get_cursor_image_reply_t& pointer, const PixelRect& area,
                 uint8_t* pixels, size_t stride) {
  const PixelRect bounds{pointer.x - pointer.xhot, pointer.y - pointer.yhot, pointer.width,
                         pointer.height};
  const PixelRect visible = Intersect(bounds, area);
  const uint32_t* const image = xcb_xfixes_get_cursor_image_cursor_image(&pointer);
  for (int32_t y = visible.y; y < visible.y + visible.height; ++y) {
    const uint32_t* const from = image + size_t(y - bounds.y) * bounds.width;
    uint8_t* const row = pixels + (y - area.y) * stride;
    for (int32_t x = visible.x; x < visible.x + visible.width; ++x) {
      Blend(from[x - bounds.x], row + size_t{4} * (x - area.x));
    }
  }
}

}  // namespace deskhand::platform
