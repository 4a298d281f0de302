// The part of CoreGraphics that the macOS backend uses, declared from its public documentation.
// Base geometry types come from CoreFoundation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <os/availability.h>
#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

// Geometry.

static inline CGPoint CGPointMake(CGFloat x, CGFloat y) {
  CGPoint point;
  point.x = x;
  point.y = y;
  return point;
}

static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  CGRect rect;
  rect.origin.x = x;
  rect.origin.y = y;
  rect.size.width = width;
  rect.size.height = height;
  return rect;
}

// False when the dictionary does not describe a rectangle.
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef _Nullable dict, CGRect* _Nullable rect);

// Images.

typedef struct __attribute__((objc_bridge(id))) CGImage* CGImageRef;

// Quartz Display Services.

typedef uint32_t CGDirectDisplayID;

typedef CF_ENUM(int32_t, CGError) { kCGErrorSuccess = 0, kCGErrorFailure = 1000 };

CGDirectDisplayID CGMainDisplayID(void);

CGError CGGetDisplaysWithPoint(CGPoint point, uint32_t maxDisplays,
                               CGDirectDisplayID* _Nullable displays,
                               uint32_t* _Nullable matchingDisplayCount);

// Quartz Window Services.

typedef uint32_t CGWindowID;

#define kCGNullWindowID ((CGWindowID)0)

typedef CF_OPTIONS(uint32_t, CGWindowListOption) {
  kCGWindowListOptionAll = 0,
  kCGWindowListOptionOnScreenOnly = 1 << 0,
  kCGWindowListExcludeDesktopElements = 1 << 4,
};

extern const CFStringRef kCGWindowAlpha;
extern const CFStringRef kCGWindowBounds;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowOwnerName;
extern const CFStringRef kCGWindowOwnerPID;

// Dictionaries, front to back.
CFArrayRef _Nullable CGWindowListCopyWindowInfo(CGWindowListOption option,
                                                CGWindowID relativeToWindow);

// Permission to read the screen.

bool CGPreflightScreenCaptureAccess(void) API_AVAILABLE(macos(10.15));
bool CGRequestScreenCaptureAccess(void) API_AVAILABLE(macos(10.15));

// Quartz Event Services.

typedef struct __attribute__((objc_bridge(id))) __CGEvent* CGEventRef;
typedef struct __attribute__((objc_bridge(id))) __CGEventSource* CGEventSourceRef;

typedef uint16_t CGKeyCode;

typedef CF_ENUM(int32_t, CGEventSourceStateID) { kCGEventSourceStatePrivate = -1 };

typedef CF_ENUM(uint32_t, CGEventTapLocation) { kCGHIDEventTap = 0 };

typedef CF_ENUM(uint32_t, CGMouseButton) {
  kCGMouseButtonLeft = 0,
  kCGMouseButtonRight = 1,
  kCGMouseButtonCenter = 2,
};

typedef CF_ENUM(uint32_t, CGScrollEventUnit) { kCGScrollEventUnitLine = 1 };

typedef CF_OPTIONS(uint64_t, CGEventFlags) {
  kCGEventFlagMaskShift = 0x20000,
  kCGEventFlagMaskControl = 0x40000,
  kCGEventFlagMaskAlternate = 0x80000,
  kCGEventFlagMaskCommand = 0x100000,
  kCGEventFlagMaskSecondaryFn = 0x800000,
};

typedef CF_ENUM(uint32_t, CGEventType) {
  kCGEventLeftMouseDown = 1,
  kCGEventLeftMouseUp = 2,
  kCGEventRightMouseDown = 3,
  kCGEventRightMouseUp = 4,
  kCGEventMouseMoved = 5,
  kCGEventLeftMouseDragged = 6,
  kCGEventRightMouseDragged = 7,
  kCGEventOtherMouseDown = 25,
  kCGEventOtherMouseUp = 26,
  kCGEventOtherMouseDragged = 27,
};

typedef CF_ENUM(uint32_t, CGEventField) { kCGMouseEventClickState = 1 };

CGEventSourceRef _Nullable CGEventSourceCreate(CGEventSourceStateID stateID);

CGEventRef _Nullable CGEventCreate(CGEventSourceRef _Nullable source);

CGEventRef _Nullable CGEventCreateMouseEvent(CGEventSourceRef _Nullable source,
                                             CGEventType mouseType, CGPoint mouseCursorPosition,
                                             CGMouseButton mouseButton);

CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source,
                                                CGKeyCode virtualKey, bool keyDown);

// Variable arguments: one int32_t for each further wheel.
CGEventRef _Nullable CGEventCreateScrollWheelEvent(CGEventSourceRef _Nullable source,
                                                   CGScrollEventUnit units, uint32_t wheelCount,
                                                   int32_t wheel1, ...);

CGPoint CGEventGetLocation(CGEventRef _Nullable event);

void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags);

void CGEventSetIntegerValueField(CGEventRef _Nullable event, CGEventField field, int64_t value);

void CGEventKeyboardSetUnicodeString(CGEventRef _Nullable event, UniCharCount stringLength,
                                     const UniChar* _Nullable unicodeString);

void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
