// The part of CoreGraphics that the macOS backend uses, declared from its public documentation.
// Base geometry types come from CoreFoundation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

// Geometry.

static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  CGRect rect;
  rect.origin.x = x;
  rect.origin.y = y;
  rect.size.width = width;
  rect.size.height = height;
  return rect;
}

// Images.

typedef struct __attribute__((objc_bridge(id))) CGImage* CGImageRef;

// Quartz Display Services.

typedef uint32_t CGDirectDisplayID;

CGDirectDisplayID CGMainDisplayID(void);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
