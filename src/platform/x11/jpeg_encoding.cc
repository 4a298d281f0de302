#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include <glib.h>

#include "platform/main_queue.h"
#include "platform/screen_capture.h"
#include "platform/x11/area_scaler.h"
#include "platform/x11/captured_image.h"
#include "platform/x11/jpeg_encoder.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

namespace {

// More parts than threads: whoever is late finds less left to do.
constexpr int32_t kParts = 4;

/// Parts that several threads take one after the other.
struct SharedWork {
  const int32_t count;
  std::atomic<int32_t> next = 0;
  Semaphore finished = {};  // signalled once for each part

  /// Works until no part is left to take. Once all are finished, `part` is not called any more.
  void TakeParts(const std::function<void(int32_t)>& part) {
    for (int32_t index = next++; index < count; index = next++) {
      part(index);
      finished.Signal();
    }
  }
};

/// Calls `part` for each index below `count`, from this thread and, as soon as it comes to it, from
/// the encoder thread.
void RunParts(int32_t count, const std::function<void(int32_t)>& part) {
  const std::shared_ptr<SharedWork> work(new SharedWork{.count = count});
  if (count > 1) EncoderThread().PostBeside([work, &part] { work->TakeParts(part); });
  work->TakeParts(part);
  for (int32_t index = 0; index < count; ++index) {
    while (!work->finished.Wait(std::chrono::hours(1))) continue;
  }
}

/// What an encoding needs beside the pixels. Mostly the next picture needs the same.
struct Workshop {
  const ScalePlan::Sizes sizes;
  const double quality;
  const std::shared_ptr<const ScalePlan> plan = std::make_shared<const ScalePlan>(sizes);
  JpegParts parts{sizes.target_width, sizes.target_height, quality, kParts};
};

// A picture of a large screen needs less; what a larger one needed is given back.
constexpr size_t kMostKeptBytes = size_t{8} << 20;

/// The place of the workshop that nobody is in.
std::unique_ptr<Workshop> ExchangeKept(std::unique_ptr<Workshop> workshop) {
  static std::mutex& mutex = *new std::mutex;
  static std::unique_ptr<Workshop>& kept = *new std::unique_ptr<Workshop>;
  const std::lock_guard lock(mutex);
  kept.swap(workshop);
  return workshop;
}

std::unique_ptr<Workshop> WorkshopFor(const ScalePlan::Sizes& sizes, double quality) {
  std::unique_ptr<Workshop> kept = ExchangeKept(nullptr);
  if (kept && kept->sizes == sizes && kept->quality == quality) return kept;
  return std::unique_ptr<Workshop>(new Workshop{.sizes = sizes, .quality = quality});
}

}  // namespace

/// The picture lies in the workshop, which is free again when the picture is not needed any more.
/// Nothing large is freed but the text: that happens on the JavaScript thread, and whoever frees
/// the most returns memory to the system, which takes time.
struct EncodedImage {
  std::unique_ptr<Workshop> workshop;
  const JpegData& data;

  ~EncodedImage() {
    if (workshop->parts.kept_bytes() <= kMostKeptBytes) ExchangeKept(std::move(workshop));
  }
};

std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage& image, int32_t width,
                                               int32_t height, double quality) {
  if (!IsJpegSize(width, height)) return nullptr;
  std::unique_ptr<Workshop> workshop = WorkshopFor({.source_width = image.picture.width,
                                                    .source_height = image.picture.height,
                                                    .window = image.window,
                                                    .target_width = width,
                                                    .target_height = height},
                                                   quality);
  JpegParts& parts = workshop->parts;
  RunParts(parts.count(), [&](int32_t part) {
    AreaScaler scaler(image.picture, workshop->plan);
    parts.Encode(part, [&scaler](int32_t y, uint8_t* room) { return scaler.Row(y, room); });
  });
  const JpegData& data = parts.Join();
  if (!data.bytes) return nullptr;
  return std::shared_ptr<const EncodedImage>(
      new EncodedImage{.workshop = std::move(workshop), .data = data});
}

size_t SizeInBytes(const EncodedImage& encoded) { return encoded.data.size; }

std::string Base64(const EncodedImage& encoded) {
  // Straight into the text: GLib's shorter way would make it twice.
  std::string text((encoded.data.size / 3 + 1) * 4 + 4, 0);
  gint state = 0, bits = 0;
  gsize length = g_base64_encode_step(encoded.data.bytes.get(), encoded.data.size,
                                      /*break_lines=*/FALSE, text.data(), &state, &bits);
  length += g_base64_encode_close(FALSE, text.data() + length, &state, &bits);
  text.resize(length);
  return text;
}

}  // namespace deskhand::platform
