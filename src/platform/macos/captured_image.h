// The picture that a capture answers with. Thread: the one that answers.
#pragma once

#import <CoreGraphics/CoreGraphics.h>

namespace deskhand::platform {

struct CapturedImage {
  CGImageRef image;  // borrowed from the completion handler
};

}  // namespace deskhand::platform
