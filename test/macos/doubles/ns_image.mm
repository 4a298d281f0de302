// NSImage, drawn into the current context.
// Documented at developer.apple.com/documentation/appkit/nsimage: an image made of a CGImage
// retains it; drawing without a current context does nothing.
#import <AppKit/AppKit.h>

#include "cg_image.h"
#include "core/recorder.h"
#include "geometry.h"

using macdoubles::ToValue;

@interface DoublePicture : TrackedObject {
  TrackedObject* _image;
}
@end

@implementation DoublePicture

- (id)initWithCGImage:(CGImageRef)image size:(NSSize)size {
  self = [super initWithLabel:"picture"];
  _image = [macdoubles::ImageOf(image) retain];
  if (!macdoubles::RecordFailable("-[NSImage initWithCGImage:size:]",
                                  {macdoubles::LabelOf(_image), ToValue(size)})) {
    return self;
  }
  [self release];
  return nil;
}

- (void)dispose {
  [_image release];
}

- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)source
         operation:(NSCompositingOperation)operation
          fraction:(CGFloat)fraction {
  macdoubles::Record("-[NSImage drawInRect:fromRect:operation:fraction:]",
                     {[self label],
                      macdoubles::LabelOf([NSGraphicsContext currentContext]),
                      ToValue(rect),
                      ToValue(source),
                      static_cast<NSUInteger>(operation),
                      fraction});
}

@end

@implementation NSImage

+ (id)alloc {
  return static_cast<id>([DoublePicture alloc]);
}

@end
