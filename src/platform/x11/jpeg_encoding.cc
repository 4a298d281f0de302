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

struct EncodedImage {
  JpegData data;
};

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

/// The plan for these sizes. The last one is kept: mostly it is the same picture again.
std::shared_ptr<const ScalePlan> PlanFor(const ScalePlan::Sizes& sizes) {
  static std::mutex& mutex = *new std::mutex;
  static std::shared_ptr<const ScalePlan>& last = *new std::shared_ptr<const ScalePlan>;
  {
    const std::lock_guard lock(mutex);
    if (last && last->sizes() == sizes) return last;
  }
  auto plan = std::make_shared<const ScalePlan>(sizes);
  const std::lock_guard lock(mutex);
  last = plan;
  return plan;
}

}  // namespace

std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage& image, int32_t width,
                                               int32_t height, double quality) {
  if (!IsJpegSize(width, height)) return nullptr;
  JpegParts parts(width, height, quality, kParts);
  const auto plan = PlanFor({.source_width = image.picture.width,
                             .source_height = image.picture.height,
                             .window = image.window,
                             .target_width = width,
                             .target_height = height});
  RunParts(parts.count(), [&parts, &image, &plan](int32_t part) {
    AreaScaler scaler(image.picture, plan);
    parts.Encode(part, [&scaler](int32_t y, uint8_t* room) { return scaler.Row(y, room); });
  });
  JpegData data = parts.Join();
  if (!data.bytes) return nullptr;
  return std::make_shared<const EncodedImage>(EncodedImage{std::move(data)});
}

size_t SizeInBytes(const EncodedImage& encoded) { return encoded.data.size; }

std::string Base64(const EncodedImage& encoded) {
  const std::unique_ptr<gchar, decltype(&g_free)> text(
      g_base64_encode(encoded.data.bytes.get(), encoded.data.size), g_free);
  return text.get();
}

}  // namespace deskhand::platform
