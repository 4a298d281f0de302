#include "platform/screen_capture.h"

#include <utility>

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/macos/captured_image.h"
#include "platform/macos/strings.h"

namespace deskhand::platform {

// Each list is read once: the indices that the logic chooses by are into what it was shown.
struct ShareableContent {
  NSArray<SCDisplay*>* displays;
  NSArray<SCRunningApplication*>* applications;
};

std::vector<ShareableDisplay> Displays(const ShareableContent& content) {
  std::vector<ShareableDisplay> displays;
  for (SCDisplay* display in content.displays) {
    displays.push_back({display.displayID, display.width, display.height});
  }
  return displays;
}

std::vector<std::optional<std::string>> ApplicationBundleIds(const ShareableContent& content) {
  std::vector<std::optional<std::string>> bundle_ids;
  for (SCRunningApplication* application in content.applications) {
    bundle_ids.push_back(ToString(application.bundleIdentifier));
  }
  return bundle_ids;
}

void GetShareableContent(ContentHandler handler) {
  const auto shared = std::make_shared<const ContentHandler>(std::move(handler));
  [SCShareableContent
      getShareableContentExcludingDesktopWindows:NO
                             onScreenWindowsOnly:YES
                               completionHandler:^(SCShareableContent* content, NSError* error) {
                                 @autoreleasepool {
                                   ShareableContentRef ref;
                                   if (content) {
                                     ref = std::make_shared<const ShareableContent>(
                                         ShareableContent{content.displays, content.applications});
                                   }
                                   (*shared)(std::move(ref), Description(error));
                                 }
                               }];
}

namespace {

SCContentFilter* MakeFilter(const CaptureFilter& filter) {
  const ShareableContent& content = *filter.content;
  NSMutableArray<SCRunningApplication*>* excluded = [NSMutableArray array];
  for (const size_t index : filter.excluded_applications) {
    [excluded addObject:[content.applications objectAtIndex:index]];
  }
  return [[SCContentFilter alloc] initWithDisplay:[content.displays objectAtIndex:filter.display]
                            excludingApplications:excluded
                                 exceptingWindows:@[]];
}

SCStreamConfiguration* MakeConfiguration(const CaptureConfiguration& configuration) {
  SCStreamConfiguration* stream = [[SCStreamConfiguration alloc] init];
  if (const auto& source = configuration.source_rect) {
    stream.sourceRect = CGRectMake(source->x, source->y, source->width, source->height);
  }
  stream.width = static_cast<size_t>(configuration.width);
  stream.height = static_cast<size_t>(configuration.height);
  stream.scalesToFit = configuration.scales_to_fit;
  stream.showsCursor = configuration.shows_cursor;
  stream.capturesAudio = configuration.captures_audio;
  return stream;
}

}  // namespace

void CaptureImage(const CaptureFilter& filter, const CaptureConfiguration& configuration,
                  ImageHandler handler) {
  const auto shared = std::make_shared<const ImageHandler>(std::move(handler));
  [SCScreenshotManager captureImageWithFilter:MakeFilter(filter)
                                configuration:MakeConfiguration(configuration)
                            completionHandler:^(CGImageRef image, NSError* error) {
                              @autoreleasepool {
                                const CapturedImage captured{image};
                                (*shared)(image ? &captured : nullptr, Description(error));
                              }
                            }];
}

}  // namespace deskhand::platform
