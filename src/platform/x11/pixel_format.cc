#include "platform/x11/pixel_format.h"

#include <bit>

namespace deskhand::platform {
namespace {

uint32_t ReadPixel(const PixelFormat& format, const uint8_t* bytes) {
  const int count = format.bits_per_pixel / 8;
  uint32_t pixel = 0;
  for (int index = 0; index < count; ++index) {
    const int significance = format.most_significant_byte_first ? count - 1 - index : index;
    pixel |= uint32_t{bytes[index]} << (8 * significance);
  }
  return pixel;
}

/// One colour of a pixel, spread over 0 to 255.
uint8_t Channel(uint32_t pixel, uint32_t mask) {
  const uint64_t largest = mask >> std::countr_zero(mask);
  const uint64_t value = (pixel & mask) >> std::countr_zero(mask);
  return static_cast<uint8_t>((value * 255 + largest / 2) / largest);
}

const xcb_visualtype_t* FindVisual(const xcb_screen_t& screen, xcb_visualid_t id) {
  auto depths = xcb_screen_allowed_depths_iterator(&screen);
  for (; depths.rem > 0; xcb_depth_next(&depths)) {
    auto visuals = xcb_depth_visuals_iterator(depths.data);
    for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
      if (visuals.data->visual_id == id) return visuals.data;
    }
  }
  return nullptr;
}

const xcb_format_t* FindFormat(const xcb_setup_t* setup, uint8_t depth) {
  auto formats = xcb_setup_pixmap_formats_iterator(setup);
  for (; formats.rem > 0; xcb_format_next(&formats)) {
    if (formats.data->depth == depth) return formats.data;
  }
  return nullptr;
}

}  // namespace

bool PixelFormat::IsBgrx() const {
  // Blue is the lowest byte of the pixel, and so the first in memory whatever the host.
  return bits_per_pixel == 32 && red_mask == 0xff0000 && green_mask == 0xff00 &&
         blue_mask == 0xff && !most_significant_byte_first;
}

size_t PixelFormat::StrideFor(int32_t width) const {
  const size_t bits = static_cast<size_t>(width) * bits_per_pixel;
  const size_t pad = scanline_pad_bits;
  return (bits + pad - 1) / pad * pad / 8;
}

std::optional<PixelFormat> FormatOfRoot(xcb_connection_t* connection, const xcb_screen_t& screen,
                                        std::string* error) {
  const xcb_setup_t* setup = xcb_get_setup(connection);
  const xcb_visualtype_t* visual = FindVisual(screen, screen.root_visual);
  const xcb_format_t* format = FindFormat(setup, screen.root_depth);
  const std::string depth = std::to_string(screen.root_depth);
  if (!visual || !format) {
    *error = "the X server does not describe its screen of depth " + depth;
    return std::nullopt;
  }
  if (visual->_class != XCB_VISUAL_CLASS_TRUE_COLOR) {
    *error = "the X screen of depth " + depth + " has no true-colour visual";
    return std::nullopt;
  }
  const int bits = format->bits_per_pixel;
  const bool masks_given = visual->red_mask && visual->green_mask && visual->blue_mask;
  if ((bits != 16 && bits != 24 && bits != 32) || !masks_given) {
    *error =
        "the X screen has pixels of " + std::to_string(bits) + " bits, which are not supported";
    return std::nullopt;
  }
  return PixelFormat{
      .red_mask = visual->red_mask,
      .green_mask = visual->green_mask,
      .blue_mask = visual->blue_mask,
      .bits_per_pixel = bits,
      .scanline_pad_bits = format->scanline_pad,
      .most_significant_byte_first = setup->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST,
  };
}

void ConvertRow(const PixelFormat& format, const uint8_t* source, uint8_t* target, int32_t width) {
  const int bytes = format.bits_per_pixel / 8;
  for (int32_t x = 0; x < width; ++x, source += bytes, target += 4) {
    const uint32_t pixel = ReadPixel(format, source);
    target[0] = Channel(pixel, format.blue_mask);
    target[1] = Channel(pixel, format.green_mask);
    target[2] = Channel(pixel, format.red_mask);
    target[3] = 0xff;
  }
}

}  // namespace deskhand::platform
