// The part of CoreFoundation that the macOS backend uses. References are Objective-C objects here
// as there, so that ownership is counted in one place.
#pragma once

#include <Foundation/Foundation.h>

// GNUstep names the geometry types the AppKit way; on macOS the two names mean one type.
typedef NSPoint CGPoint;
typedef NSSize CGSize;
typedef NSRect CGRect;

// The macros behind NS_ENUM and NS_OPTIONS.
#define CF_ENUM NS_ENUM
#define CF_OPTIONS NS_OPTIONS

typedef unsigned char Boolean;
typedef unsigned short UniChar;
typedef unsigned long UniCharCount;

typedef const void* CFTypeRef;
typedef const struct __attribute__((objc_bridge(NSString))) __CFString* CFStringRef;
typedef const struct __attribute__((objc_bridge(NSArray))) __CFArray* CFArrayRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary* CFDictionaryRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFBoolean* CFBooleanRef;

// Run loops.

typedef int SInt32;
typedef double CFTimeInterval;
typedef struct __attribute__((objc_bridge_mutable(id))) __CFRunLoop* CFRunLoopRef;
typedef CFStringRef CFRunLoopMode;

typedef CF_ENUM(SInt32, CFRunLoopRunResult) {
  kCFRunLoopRunFinished = 1,
  kCFRunLoopRunStopped = 2,
  kCFRunLoopRunTimedOut = 3,
  kCFRunLoopRunHandledSource = 4,
};

#ifdef __cplusplus
extern "C" {
#endif

extern const CFBooleanRef kCFBooleanTrue;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

extern const CFRunLoopMode kCFRunLoopDefaultMode;

CFRunLoopRef CFRunLoopGetCurrent(void);
CFRunLoopRef CFRunLoopGetMain(void);
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);

#ifdef __cplusplus
}
#endif
