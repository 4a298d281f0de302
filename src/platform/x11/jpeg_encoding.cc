#include <utility>

#include <glib.h>

#include "platform/screen_capture.h"
#include "platform/x11/area_scaler.h"
#include "platform/x11/captured_image.h"
#include "platform/x11/jpeg_encoder.h"

namespace deskhand::platform {

struct EncodedImage {
  JpegData data;
};

std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage& image, int32_t width,
                                               int32_t height, double quality) {
  if (!IsJpegSize(width, height)) return nullptr;
  AreaScaler scaler(image.picture, image.window, width, height);
  JpegData data =
      EncodeRows(width, height, quality, [&](int32_t y, uint8_t* row) { scaler.ScaleRow(y, row); });
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
