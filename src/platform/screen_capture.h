// What can be captured, one picture of it, and its JPEG form.
// Space: points of the captured display, origin at its top-left corner, y down; sizes of pictures
// in pixels. Threads: the two requests start on the main queue and answer on any thread, once, each
// inside a call scope of its own; what they hand over is borrowed for the length of the answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"

namespace deskhand::platform {

struct ShareableDisplay {
  uint32_t id = 0;
  int64_t width = 0;  // points
  int64_t height = 0;
};

/// The displays and applications on screen at one moment; each backend defines it. Shared, because
/// a capture that is still under way refers to it.
struct ShareableContent;
using ShareableContentRef = std::shared_ptr<const ShareableContent>;

/// The displays in the platform's order.
std::vector<ShareableDisplay> Displays(const ShareableContent& content);

/// The bundle identifiers of the applications in the platform's order; none for an application
/// without one. Empty where excluded_bundle_ids (below) alone decides.
std::vector<std::optional<std::string>> ApplicationBundleIds(const ShareableContent& content);

/// `content` is null when there is none; `error` is the platform's description when it gave one.
/// Success is content without error.
using ContentHandler =
    std::function<void(ShareableContentRef content, const std::optional<std::string>& error)>;

/// Asks for the content: desktop windows included, on-screen windows only.
void GetShareableContent(ContentHandler handler);

struct CaptureFilter {
  ShareableContentRef content;
  size_t display = 0;                            // index into Displays(*content)
  std::vector<size_t> excluded_applications;     // indices into ApplicationBundleIds(*content)
  std::vector<std::string> excluded_bundle_ids;  // as the caller named them, running or not: a
                                                 // platform without live filters holds them against
                                                 // what is on screen at the moment of capture
};

struct CaptureConfiguration {
  int32_t width = 0;  // pixels, as asked for: neither sign nor size is checked
  int32_t height = 0;
  std::optional<Rect> source_rect;  // passed as given; the whole display when absent
  bool scales_to_fit = true;
  bool shows_cursor = true;
  bool captures_audio = false;
};

/// A captured picture; each backend defines it.
struct CapturedImage;

/// `image` is null when there is none; `error` as in ContentHandler.
using ImageHandler =
    std::function<void(const CapturedImage* image, const std::optional<std::string>& error)>;

/// Takes one picture.
void CaptureImage(const CaptureFilter& filter, const CaptureConfiguration& configuration,
                  ImageHandler handler);

/// Encoded image data; each backend defines it.
struct EncodedImage;

/// The picture scaled to exactly `width` x `height` pixels and encoded as JPEG. `quality` is the
/// compression factor in (0, 1]; NaN is harmless. Null when it cannot be done.
std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage& image, int32_t width,
                                               int32_t height, double quality);

size_t SizeInBytes(const EncodedImage& encoded);

/// Standard alphabet, padded, no line breaks.
std::string Base64(const EncodedImage& encoded);

}  // namespace deskhand::platform
