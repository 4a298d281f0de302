#include "platform/x11/jpeg_encoder.h"

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

// After <cstdio>: the header needs FILE.
#include <jpeglib.h>

namespace deskhand::platform {
namespace {

constexpr int32_t kBlockRows = 16;  // of pixels in a row of 4:2:0 blocks
constexpr int32_t kBlockColumns = 16;
constexpr double kQualityForNaN = 0.75;
// 16384 x 8192: a wall of displays, and about a second's work. More is a mistake or an attack.
constexpr int64_t kMostPixels = int64_t{1} << 27;
// Below this, waking another thread takes longer than the work that it would do.
constexpr int64_t kFewestPixelsOfAPart = int64_t{1} << 16;
constexpr int64_t kLongestRestartInterval = 65535;  // blocks: the marker segment has 16 bits

struct ErrorManager {
  jpeg_error_mgr base;  // first: the library hands out a pointer to it
  std::jmp_buf escape;
};

void Escape(j_common_ptr info) {
  std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->escape, 1);
}

/// Instead of jpeg_std_error, which writes to the host's standard error; for that Debian's static
/// library cannot be linked into an addon, either.
jpeg_error_mgr SilentErrors() {
  jpeg_error_mgr errors{};
  errors.error_exit = Escape;
  errors.emit_message = [](j_common_ptr, int) {};
  errors.output_message = [](j_common_ptr) {};
  errors.format_message = [](j_common_ptr, char* text) { *text = '\0'; };
  errors.reset_error_mgr = [](j_common_ptr info) { info->err->num_warnings = 0; };
  return errors;
}

constexpr size_t kFirstBuffer = size_t{256} << 10;

/// Memory that grows as the library fills it. Its own, because jpeg_mem_dest leaves a freed buffer
/// behind when an error strikes after the first growth.
struct Destination {
  jpeg_destination_mgr base;  // first: the library hands out a pointer to it
  uint8_t* bytes;
  size_t capacity;
};

/// Doubles the buffer and points the library behind the `used` bytes of it.
void Grow(j_compress_ptr info, size_t used) {
  auto* destination = reinterpret_cast<Destination*>(info->dest);
  const size_t capacity = std::max(kFirstBuffer, destination->capacity * 2);
  auto* bytes = static_cast<uint8_t*>(std::realloc(destination->bytes, capacity));
  if (!bytes) info->err->error_exit(reinterpret_cast<j_common_ptr>(info));
  destination->bytes = bytes;
  destination->capacity = capacity;
  destination->base.next_output_byte = bytes + used;
  destination->base.free_in_buffer = capacity - used;
}

void StartOutput(j_compress_ptr info) {
  auto* destination = reinterpret_cast<Destination*>(info->dest);
  if (!destination->bytes) return Grow(info, 0);
  destination->base.next_output_byte = destination->bytes;
  destination->base.free_in_buffer = destination->capacity;
}

boolean ExtendOutput(j_compress_ptr info) {
  // The whole buffer is in use, whatever free_in_buffer says at this moment.
  Grow(info, reinterpret_cast<Destination*>(info->dest)->capacity);
  return TRUE;
}

void FinishOutput(j_compress_ptr) {}

int QualityNumber(double quality) {
  const double factor = std::isnan(quality) ? kQualityForNaN : quality;
  return static_cast<int>(std::lround(std::clamp(factor, 0.01, 1.0) * 100));
}

int32_t BlockRowsIn(int32_t height) { return (height + kBlockRows - 1) / kBlockRows; }

/// How many blocks a part of `rows` rows has.
int64_t BlocksIn(int32_t width, int32_t rows) {
  return int64_t{(width + kBlockColumns - 1) / kBlockColumns} * BlockRowsIn(rows);
}

/// What one part needs to know.
struct Part {
  int32_t width;
  int32_t first_row;
  int32_t rows;
  int quality;
  unsigned restart_interval;  // 0: none, the part is the whole picture
};

void Configure(jpeg_compress_struct* info, const Part& part) {
  info->image_width = part.width;
  info->image_height = part.rows;
  info->input_components = 4;
  info->in_color_space = JCS_EXT_BGRX;
  jpeg_set_defaults(info);  // 4:2:0
  jpeg_set_quality(info, part.quality, /*force_baseline=*/TRUE);
  info->dct_method = JDCT_ISLOW;
  info->restart_interval = part.restart_interval;
}

/// All that the library touches. No object here has a destructor: an error leaves by longjmp.
bool Compress(jpeg_compress_struct* info, ErrorManager* errors, const Part& part,
              const RowSource& rows, uint8_t* strip, Destination* destination) {
  const size_t stride = size_t{4} * part.width;
  JSAMPROW pointers[kBlockRows];
  if (setjmp(errors->escape) != 0) return false;
  jpeg_create_compress(info);
  info->dest = &destination->base;
  Configure(info, part);
  jpeg_start_compress(info, TRUE);
  while (info->next_scanline < info->image_height) {
    const int32_t done = info->next_scanline;
    const int32_t count = std::min(kBlockRows, part.rows - done);
    for (int32_t index = 0; index < count; ++index) {
      // The library reads them, though it does not say so.
      pointers[index] =
          const_cast<JSAMPROW>(rows(part.first_row + done + index, strip + index * stride));
    }
    jpeg_write_scanlines(info, pointers, count);
  }
  jpeg_finish_compress(info);
  return true;
}

/// Leaves the part in `data`, whose memory it uses and extends; no bytes when the library gives up.
void EncodePart(const Part& part, const RowSource& rows, std::vector<uint8_t>* strip,
                JpegData* data) {
  strip->resize(size_t{4} * part.width * kBlockRows);
  jpeg_compress_struct info{};
  ErrorManager errors{.base = SilentErrors(), .escape = {}};
  info.err = &errors.base;
  Destination destination{.base = {}, .bytes = data->bytes.release(), .capacity = data->capacity};
  destination.base.init_destination = StartOutput;
  destination.base.empty_output_buffer = ExtendOutput;
  destination.base.term_destination = FinishOutput;
  const bool done = Compress(&info, &errors, part, rows, strip->data(), &destination);
  jpeg_destroy_compress(&info);
  data->bytes.reset(destination.bytes);
  data->capacity = destination.capacity;
  data->size = destination.capacity - destination.base.free_in_buffer;
  if (!done) *data = {};
}

// Markers of ITU-T T.81, table B.1, without their first byte, 0xff.
constexpr uint8_t kStartOfFrame = 0xc0;
constexpr uint8_t kFirstRestart = 0xd0;
constexpr uint8_t kStartOfScan = 0xda;
constexpr size_t kMarkerSize = 2;
constexpr size_t kHeightInFrame = 5;  // behind the marker, the segment's length and the precision

/// Calls `segment` with the marker and the place of each segment of the header, and returns where
/// the header ends and the compressed data begin.
template <class Segment>
size_t WalkHeader(uint8_t* bytes, const Segment& segment) {
  size_t at = kMarkerSize;  // behind the start of image
  for (;;) {
    const uint8_t marker = bytes[at + 1];
    segment(marker, bytes + at);
    at += kMarkerSize + (size_t{bytes[at + 2]} << 8 | bytes[at + 3]);
    if (marker == kStartOfScan) return at;
  }
}

void WriteHeight(uint8_t* header, int32_t height) {
  WalkHeader(header, [height](uint8_t marker, uint8_t* segment) {
    if (marker != kStartOfFrame) return;
    segment[kHeightInFrame] = static_cast<uint8_t>(height >> 8);
    segment[kHeightInFrame + 1] = static_cast<uint8_t>(height);
  });
}

}  // namespace

bool IsJpegSize(int32_t width, int32_t height) {
  return width >= 1 && height >= 1 && width <= JPEG_MAX_DIMENSION && height <= JPEG_MAX_DIMENSION &&
         int64_t{width} * height <= kMostPixels;
}

JpegParts::JpegParts(int32_t width, int32_t height, double quality, int32_t wanted)
    : width_(width), height_(height), quality_(QualityNumber(quality)), rows_each_(height) {
  const int32_t block_rows = BlockRowsIn(height);
  const int64_t most = int64_t{width} * height / kFewestPixelsOfAPart;
  const auto parts = static_cast<int32_t>(std::clamp<int64_t>(most, 1, wanted));
  const int32_t rows_each = (block_rows + parts - 1) / parts * kBlockRows;
  if (parts > 1 && BlocksIn(width, rows_each) <= kLongestRestartInterval) rows_each_ = rows_each;
  parts_.resize((height + rows_each_ - 1) / rows_each_);
}

void JpegParts::Encode(int32_t part, const RowSource& rows) {
  const int32_t first = part * rows_each_;
  const bool is_whole = count() == 1;
  EncodePart(
      {.width = width_,
       .first_row = first,
       .rows = std::min(rows_each_, height_ - first),
       .quality = quality_,
       .restart_interval = is_whole ? 0 : static_cast<unsigned>(BlocksIn(width_, rows_each_))},
      rows, &parts_[part].strip, &parts_[part].data);
}

size_t JpegParts::kept_bytes() const {
  size_t bytes = whole_.capacity;
  for (const Room& part : parts_) bytes += part.strip.capacity() + part.data.capacity;
  return bytes;
}

const JpegData& JpegParts::Join() {
  size_t size = 0;
  bool is_complete = true;
  for (const Room& part : parts_) {
    size += part.data.size;
    if (!part.data.bytes) is_complete = false;
  }
  if (!is_complete || size > whole_.capacity) whole_ = {};
  if (!is_complete) return whole_;
  if (!whole_.bytes) {
    whole_.bytes.reset(static_cast<uint8_t*>(std::malloc(size)));
    if (!whole_.bytes) return whole_;
    whole_.capacity = size;
  }

  // Every part has the same header, but for the height, and ends with a marker's worth of bytes
  // that a restart takes the place of.
  whole_.size = 0;
  for (int32_t index = 0; index < count(); ++index) {
    const JpegData& part = parts_[index].data;
    const size_t header =
        index == 0 ? 0 : WalkHeader(part.bytes.get(), [](uint8_t, const uint8_t*) {});
    std::memcpy(whole_.bytes.get() + whole_.size, part.bytes.get() + header, part.size - header);
    whole_.size += part.size - header;
    if (index + 1 == count()) break;
    whole_.bytes.get()[whole_.size - 1] = kFirstRestart + index % 8;
  }
  WriteHeight(whole_.bytes.get(), height_);
  return whole_;
}

}  // namespace deskhand::platform
