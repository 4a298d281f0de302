// The part of CoreFoundation that the macOS backend uses, declared from its public documentation.
#pragma once

// An option set is a plain integer in C++, so that its values can be combined with |.
#define CF_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#ifdef __cplusplus
#define CF_OPTIONS(type, name) \
  type name;                   \
  enum : type
#else
#define CF_OPTIONS(type, name) CF_ENUM(type, name)
#endif

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

void CFRelease(CFTypeRef object);

extern const CFRunLoopMode kCFRunLoopDefaultMode;

CFRunLoopRef CFRunLoopGetCurrent(void);
CFRunLoopRef CFRunLoopGetMain(void);
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);

#ifdef __cplusplus
}
#endif

typedef double CGFloat;

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
typedef struct CGPoint CGPoint;

struct CGSize {
  CGFloat width;
  CGFloat height;
};
typedef struct CGSize CGSize;

struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGRect CGRect;
