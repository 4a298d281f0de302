// JPEG from rows of pixels, by libjpeg-turbo. Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

namespace deskhand::platform {

/// Encoded bytes, in memory of the C library's.
struct JpegData {
  struct Free {
    void operator()(uint8_t* memory) const { std::free(memory); }
  };
  std::unique_ptr<uint8_t, Free> bytes;  // null: the encoding failed
  size_t size = 0;
  size_t capacity = 0;  // of the memory
};

/// Whether a picture of this size can be encoded: within JPEG's range and a sensible area.
bool IsJpegSize(int32_t width, int32_t height);

/// Row `y` of the picture: 4 bytes a pixel, blue, green, red, and one that is ignored. It may be
/// written to `room`, which is the row's own until sixteen rows later.
using RowSource = std::function<const uint8_t*(int32_t y, uint8_t* room)>;

/// A baseline JPEG with 4:2:0 chroma. It is encoded in parts, one below the other, which may be
/// worked on at the same time; restart markers join them to one picture. The memory for that is
/// kept for the next picture of the same form.
class JpegParts {
 public:
  /// The size must be one that IsJpegSize accepts. `quality` is a factor in (0, 1]; NaN counts as
  /// 0.75. There are `wanted` parts, or fewer when the picture is too small or too large for them.
  JpegParts(int32_t width, int32_t height, double quality, int32_t wanted);

  int32_t count() const { return static_cast<int32_t>(parts_.size()); }

  /// Encodes one part. Its rows are asked for in order, sixteen at a time, so that memory does not
  /// grow with the picture.
  void Encode(int32_t part, const RowSource& rows);

  /// The whole picture, once every part is encoded; no bytes when the library gave up on one. It
  /// stays until the next one.
  const JpegData& Join();

  /// The memory that is kept, in bytes.
  size_t kept_bytes() const;

 private:
  struct Room {
    std::vector<uint8_t> strip;  // the rows that are at work
    JpegData data;
  };

  const int32_t width_;
  const int32_t height_;
  const int quality_;
  int32_t rows_each_;  // of every part but the last, which has what remains
  std::vector<Room> parts_;
  JpegData whole_;
};

}  // namespace deskhand::platform
