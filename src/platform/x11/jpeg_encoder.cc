#include "platform/x11/jpeg_encoder.h"

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <vector>

// After <cstdio>: the header needs FILE.
#include <jpeglib.h>

namespace deskhand::platform {
namespace {

constexpr int kRowsAtATime = 16;  // one row of 4:2:0 blocks
constexpr double kQualityForNaN = 0.75;
// 16384 x 8192: a wall of displays, and about a second's work. More is a mistake or an attack.
constexpr int64_t kMostPixels = int64_t{1} << 27;

struct ErrorManager {
  jpeg_error_mgr base;  // first: the library hands out a pointer to it
  std::jmp_buf escape;
};

void Escape(j_common_ptr info) {
  std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->escape, 1);
}

void Ignore(j_common_ptr) {}

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

void StartOutput(j_compress_ptr info) { Grow(info, 0); }

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

void Configure(jpeg_compress_struct* info, int32_t width, int32_t height, double quality) {
  info->image_width = width;
  info->image_height = height;
  info->input_components = 4;
  info->in_color_space = JCS_EXT_BGRX;
  jpeg_set_defaults(info);  // 4:2:0
  jpeg_set_quality(info, QualityNumber(quality), /*force_baseline=*/TRUE);
  info->dct_method = JDCT_ISLOW;
}

/// All that the library touches. No object here has a destructor: an error leaves by longjmp.
bool Compress(jpeg_compress_struct* info, ErrorManager* errors, int32_t width, int32_t height,
              double quality, const RowSource& rows, uint8_t* strip, Destination* destination) {
  const size_t stride = size_t{4} * width;
  JSAMPROW pointers[kRowsAtATime];
  for (int index = 0; index < kRowsAtATime; ++index) pointers[index] = strip + index * stride;
  if (setjmp(errors->escape) != 0) return false;
  jpeg_create_compress(info);
  info->dest = &destination->base;
  Configure(info, width, height, quality);
  jpeg_start_compress(info, TRUE);
  while (info->next_scanline < info->image_height) {
    const int32_t first = info->next_scanline;
    const int32_t count = std::min(kRowsAtATime, height - first);
    for (int32_t index = 0; index < count; ++index) rows(first + index, pointers[index]);
    jpeg_write_scanlines(info, pointers, count);
  }
  jpeg_finish_compress(info);
  return true;
}

}  // namespace

bool IsJpegSize(int32_t width, int32_t height) {
  return width >= 1 && height >= 1 && width <= JPEG_MAX_DIMENSION && height <= JPEG_MAX_DIMENSION &&
         int64_t{width} * height <= kMostPixels;
}

JpegData EncodeRows(int32_t width, int32_t height, double quality, const RowSource& rows) {
  std::vector<uint8_t> strip(size_t{4} * width * kRowsAtATime);
  jpeg_compress_struct info{};
  ErrorManager errors{};
  info.err = jpeg_std_error(&errors.base);
  errors.base.error_exit = Escape;
  errors.base.output_message = Ignore;  // not on the host's standard error
  Destination destination{};
  destination.base.init_destination = StartOutput;
  destination.base.empty_output_buffer = ExtendOutput;
  destination.base.term_destination = FinishOutput;
  const bool done =
      Compress(&info, &errors, width, height, quality, rows, strip.data(), &destination);
  jpeg_destroy_compress(&info);
  JpegData data{.bytes = std::unique_ptr<uint8_t, JpegData::Free>(destination.bytes)};
  if (!done) return {};
  data.size = destination.capacity - destination.base.free_in_buffer;
  return data;
}

}  // namespace deskhand::platform
