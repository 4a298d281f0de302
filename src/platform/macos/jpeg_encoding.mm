#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#include "platform/macos/captured_image.h"
#include "platform/macos/strings.h"
#include "platform/screen_capture.h"

namespace deskhand::platform {

struct EncodedImage {
  NSData* data;
};

namespace {

/// An 8-bit RGBA bitmap that allocates its own pixels; nil when it cannot.
NSBitmapImageRep* MakeBitmap(int32_t width, int32_t height) {
  return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                 pixelsWide:width
                                                 pixelsHigh:height
                                              bitsPerSample:8
                                            samplesPerPixel:4
                                                   hasAlpha:YES
                                                   isPlanar:NO
                                             colorSpaceName:NSDeviceRGBColorSpace
                                                bytesPerRow:0
                                               bitsPerPixel:0];
}

}  // namespace

std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage& image, int32_t width,
                                               int32_t height, double quality) {
  NSBitmapImageRep* bitmap = MakeBitmap(width, height);
  if (!bitmap) return nullptr;
  NSGraphicsContext* context = [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
  if (!context) return nullptr;

  [NSGraphicsContext saveGraphicsState];
  [NSGraphicsContext setCurrentContext:context];
  NSImage* picture = [[NSImage alloc] initWithCGImage:image.image size:NSMakeSize(width, height)];
  [picture drawInRect:NSMakeRect(0, 0, width, height)
             fromRect:NSZeroRect
            operation:NSCompositingOperationCopy
             fraction:1.0];
  [NSGraphicsContext restoreGraphicsState];

  NSDictionary* properties = @{NSImageCompressionFactor : @(quality)};
  NSData* data = [bitmap representationUsingType:NSBitmapImageFileTypeJPEG properties:properties];
  if (!data) return nullptr;
  return std::make_shared<const EncodedImage>(EncodedImage{data});
}

size_t SizeInBytes(const EncodedImage& encoded) { return encoded.data.length; }

std::string Base64(const EncodedImage& encoded) {
  return ToString([encoded.data base64EncodedStringWithOptions:0]).value_or("");
}

}  // namespace deskhand::platform
