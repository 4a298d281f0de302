#include "capture/jpeg_encoding.h"

#include "platform/call_scope.h"

namespace deskhand {
namespace {

constexpr size_t kLongestNonImage = 63;  // bytes

}  // namespace

std::string EncodeImageToBase64JPEG(const platform::CapturedImage& image, int32_t target_width,
                                    int32_t target_height, double quality) {
  const platform::CallScope scope;
  const auto encoded = platform::EncodeJpeg(image, target_width, target_height, quality);
  if (!encoded || platform::SizeInBytes(*encoded) <= kLongestNonImage) return {};
  return platform::Base64(*encoded);
}

}  // namespace deskhand
