#include <chrono>
#include <functional>
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

// The capture thread and one beside it.
constexpr int32_t kParts = 2;

/// Does both at the same time where a second thread can be had.
void RunBoth(const std::function<void()>& here, const std::function<void()>& beside) {
  const Semaphore done;
  const bool is_posted = EncoderThread().Post([&beside, done] {
    beside();
    done.Signal();
  });
  here();
  if (is_posted) {
    while (!done.Wait(std::chrono::hours(1))) continue;
  } else {
    beside();
  }
}

}  // namespace

std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage& image, int32_t width,
                                               int32_t height, double quality) {
  if (!IsJpegSize(width, height)) return nullptr;
  JpegParts parts(width, height, quality, kParts);
  const AreaScaler scaler(image.picture, image.window, width, height);
  const auto encode = [&parts, &scaler](int32_t part) {
    AreaScaler own = scaler;
    parts.Encode(part, [&own](int32_t y, uint8_t* row) { own.ScaleRow(y, row); });
  };
  if (parts.count() == 1) {
    encode(0);
  } else {
    RunBoth([&] { encode(0); }, [&] { encode(1); });
  }
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
