// The part of ApplicationServices that the macOS backend uses, declared from its public
// documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <os/availability.h>

#pragma clang assume_nonnull begin

#ifdef __cplusplus
extern "C" {
#endif

// Permission to make synthetic input.

extern CFStringRef kAXTrustedCheckOptionPrompt API_AVAILABLE(macos(10.9));

Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options) API_AVAILABLE(macos(10.9));

#ifdef __cplusplus
}
#endif

#pragma clang assume_nonnull end
