// A captured picture as the text that the capture functions return.
// Threads: any; called from the platform's capture answer.
#pragma once

#include <cstdint>
#include <string>

#include "platform/screen_capture.h"

namespace deskhand {

/// `image` redrawn at exactly `target_width` x `target_height` pixels, as base64 JPEG without line
/// breaks; empty when that fails or the data are too short to be a picture. `image` is borrowed.
std::string EncodeImageToBase64JPEG(const platform::CapturedImage& image, int32_t target_width,
                                    int32_t target_height, double quality);

}  // namespace deskhand
