// How the pixels of a screen lie in memory, and their conversion to the form that is encoded:
// 4 bytes each, blue, green, red, and one that is ignored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <xcb/xcb.h>

namespace deskhand::platform {

struct PixelFormat {
  uint32_t red_mask = 0;
  uint32_t green_mask = 0;
  uint32_t blue_mask = 0;
  int bits_per_pixel = 0;     // 16, 24 or 32
  int scanline_pad_bits = 0;  // rows begin at multiples of this
  bool most_significant_byte_first = false;

  /// The form that is encoded: nothing to convert.
  bool IsBgrx() const;
  size_t StrideFor(int32_t width) const;
};

/// The format of the screen's root window; none for visuals that are not true colour, or deeper
/// than the protocol's usual ones, with the reason in `*error`.
std::optional<PixelFormat> FormatOfRoot(xcb_connection_t* connection, const xcb_screen_t& screen,
                                        std::string* error);

/// Converts `width` pixels. `source` and `target` do not overlap.
void ConvertRow(const PixelFormat& format, const uint8_t* source, uint8_t* target, int32_t width);

}  // namespace deskhand::platform
