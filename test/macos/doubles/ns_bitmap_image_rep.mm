// NSBitmapImageRep. The scene's `jpeg` is { bytes }, how long the encoded data are; null for no
// data at all. The data begin as a JPEG does, then count up. Documented at
// developer.apple.com/documentation/appkit/nsbitmapimagerep: the initialiser gives nil when the
// arguments are inconsistent or memory runs out, and the encoder nil when it cannot encode.
#include <vector>

#import <AppKit/AppKit.h>

#include "core/recorder.h"
#include "core/tracked_object.h"

NSBitmapImageRepPropertyKey const NSImageCompressionFactor = @"NSImageCompressionFactor";
NSColorSpaceName const NSDeviceRGBColorSpace = @"NSDeviceRGBColorSpace";

using macdoubles::RecordFailable;
using macdoubles::Value;

namespace {

NSData* MakeJpegData(size_t size) {
  std::vector<unsigned char> bytes(size);
  for (size_t index = 0; index < size; ++index) bytes[index] = static_cast<unsigned char>(index);
  constexpr unsigned char kStartOfImage[] = {0xff, 0xd8, 0xff};
  for (size_t index = 0; index < sizeof kStartOfImage && index < size; ++index) {
    bytes[index] = kStartOfImage[index];
  }
  return [NSData dataWithBytes:bytes.data() length:size];
}

}  // namespace

/// Encoded data: Foundation's own, with the calls recorded.
@interface DoubleData : TrackedObject {
 @public
  NSData* _data;
}
@end

@implementation DoubleData

- (void)dispose {
  [_data release];
}

- (NSUInteger)length {
  macdoubles::Record("-[NSData length]", {[self label]});
  return [_data length];
}

- (NSString*)base64EncodedStringWithOptions:(NSDataBase64EncodingOptions)options {
  if (RecordFailable("-[NSData base64EncodedStringWithOptions:]", {[self label], options})) {
    return nil;
  }
  return [_data base64EncodedStringWithOptions:options];
}

@end

@interface DoubleBitmap : TrackedObject
@end

@implementation DoubleBitmap

- (id)initWithBitmapDataPlanes:(unsigned char**)planes
                    pixelsWide:(NSInteger)width
                    pixelsHigh:(NSInteger)height
                 bitsPerSample:(NSInteger)bitsPerSample
               samplesPerPixel:(NSInteger)samplesPerPixel
                      hasAlpha:(BOOL)alpha
                      isPlanar:(BOOL)isPlanar
                colorSpaceName:(NSString*)colorSpaceName
                   bytesPerRow:(NSInteger)bytesPerRow
                  bitsPerPixel:(NSInteger)bitsPerPixel {
  self = [super initWithLabel:"bitmap"];
  const bool fails = RecordFailable(
      "-[NSBitmapImageRep initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:"
      "samplesPerPixel:hasAlpha:isPlanar:colorSpaceName:bytesPerRow:bitsPerPixel:]",
      {planes ? "planes" : "NULL", width, height, bitsPerSample, samplesPerPixel, alpha != NO,
       isPlanar != NO, [colorSpaceName UTF8String], bytesPerRow, bitsPerPixel});
  // No bitmap has no pixels.
  if (!fails && width > 0 && height > 0) return self;
  [self release];
  return nil;
}

- (NSData*)representationUsingType:(NSBitmapImageFileType)type
                        properties:(NSDictionary*)properties {
  NSNumber* factor = [properties objectForKey:NSImageCompressionFactor];
  const bool fails = RecordFailable(
      "-[NSBitmapImageRep representationUsingType:properties:]",
      {[self label],
       static_cast<NSUInteger>(type),
       Value::Object{{"NSImageCompressionFactor", factor ? Value([factor doubleValue]) : Value()},
                     {"entries", [properties count]}}});
  const Value script = macdoubles::SceneOf("jpeg");
  if (fails || script.IsNull()) return nil;
  DoubleData* data = [[[DoubleData alloc] initWithLabel:"JPEG data"] autorelease];
  data->_data = [MakeJpegData(static_cast<size_t>(script["bytes"].Number())) retain];
  return static_cast<NSData*>(static_cast<id>(data));
}

@end

@implementation NSImageRep
@end

@implementation NSBitmapImageRep

+ (id)alloc {
  return static_cast<id>([DoubleBitmap alloc]);
}

@end
