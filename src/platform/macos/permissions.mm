#include "platform/permissions.h"

#import <ApplicationServices/ApplicationServices.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

namespace deskhand::platform {

bool HasAccessibility() { return AXIsProcessTrusted(); }

bool RequestAccessibility() {
  NSDictionary* options =
      @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : (__bridge id)kCFBooleanTrue};
  return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
}

bool HasScreenRecording() { return CGPreflightScreenCaptureAccess(); }

bool RequestScreenRecording() { return CGRequestScreenCaptureAccess(); }

}  // namespace deskhand::platform
