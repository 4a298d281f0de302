// JPEG from rows of pixels, by libjpeg-turbo. Thread: any, one encoding per encoder at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>

namespace deskhand::platform {

struct JpegData {
  struct Free {
    void operator()(uint8_t* memory) const { std::free(memory); }
  };
  std::unique_ptr<uint8_t, Free> bytes;
  size_t size = 0;
};

/// Whether a picture of this size can be encoded: within JPEG's range and a sensible area.
bool IsJpegSize(int32_t width, int32_t height);

/// Writes row `y` of the picture: 4 bytes a pixel, blue, green, red, and one that is ignored.
using RowSource = std::function<void(int32_t y, uint8_t* row)>;

/// A baseline JPEG with 4:2:0 chroma. `quality` is a factor in (0, 1]; NaN counts as 0.75. Rows are
/// asked for in order, sixteen at a time, so that memory does not grow with the picture. The size
/// must be one that IsJpegSize accepts. No bytes when the library gives up.
JpegData EncodeRows(int32_t width, int32_t height, double quality, const RowSource& rows);

}  // namespace deskhand::platform
