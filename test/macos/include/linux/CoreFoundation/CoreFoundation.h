// The part of CoreFoundation that the macOS backend uses. References are Objective-C objects here
// as there, so that ownership is counted in one place.
#pragma once

#include <Foundation/Foundation.h>

// GNUstep names the geometry types the AppKit way; on macOS the two names mean one type.
typedef NSPoint CGPoint;
typedef NSSize CGSize;
typedef NSRect CGRect;

typedef const void* CFTypeRef;

#ifdef __cplusplus
extern "C" {
#endif

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

#ifdef __cplusplus
}
#endif
