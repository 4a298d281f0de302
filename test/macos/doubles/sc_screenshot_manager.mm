// SCScreenshotManager. The scene's `image` has `result` ("image", "error", "both" or "neither"),
// `error` (its description), `size` ([width, height] in pixels, to tell it by), and what answers.h
// says of the answer.
// Documented at developer.apple.com/documentation/screencapturekit/scscreenshotmanager: the handler
// gets an image or an error, on a queue that is not specified. An image is the framework's and is
// gone when the handler returns, unless the handler retains it.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "cg_image.h"
#include "core/answers.h"
#include "core/owned_block.h"
#include "core/recorder.h"
#include "sc_errors.h"

using macdoubles::LabelOf;
using macdoubles::Value;

namespace {

std::string LabelOfSize(const Value& size) {
  const Value::List pixels = size.Items();
  if (pixels.size() != 2) return "image";
  return "image " + std::to_string(static_cast<long>(pixels[0].Number())) + " x " +
         std::to_string(static_cast<long>(pixels[1].Number()));
}

}  // namespace

@implementation SCScreenshotManager

+ (void)captureImageWithFilter:(SCContentFilter*)filter
                 configuration:(SCStreamConfiguration*)configuration
             completionHandler:(void (^)(CGImageRef, NSError*))handler {
  const bool fails = macdoubles::RecordFailable(
      "+[SCScreenshotManager captureImageWithFilter:configuration:completionHandler:]",
      {LabelOf(filter), LabelOf(configuration)});
  const Value script = macdoubles::SceneOf("image");
  const bool is_refused = fails || !filter || !configuration;
  const std::string result = is_refused ? "error" : script["result"].Text();
  const auto owned = macdoubles::OwnBlock(handler);
  macdoubles::Answer("image", [owned, script, result] {
    const bool has_image = result == "image" || result == "both";
    const bool has_error = result == "error" || result == "both";
    TrackedObject* image =
        has_image ? [[TrackedObject alloc] initWithLabel:LabelOfSize(script["size"])] : nil;
    NSError* error = has_error ? macdoubles::NewStreamError(script["error"].Text()) : nil;
    macdoubles::BlockOf<decltype(handler)>(owned)(macdoubles::ReferenceTo(image), error);
    [image release];
    [error release];
  });
}

@end
