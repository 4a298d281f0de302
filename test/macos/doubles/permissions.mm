// Permissions: HIServices' trust and CoreGraphics' access to the screen. The scene's `isTrusted`
// and `mayReadScreen` are what the user granted; asking changes nothing by itself. Documented at
// developer.apple.com/documentation/applicationservices/1459186- axisprocesstrustedwithoptions and
// developer.apple.com/documentation/coregraphics: the requests answer at once, whatever the user
// will say.
#import <ApplicationServices/ApplicationServices.h>
#import <CoreGraphics/CoreGraphics.h>

#include "core/recorder.h"
#include "objects.h"

CFStringRef kAXTrustedCheckOptionPrompt =
    reinterpret_cast<CFStringRef>(@"AXTrustedCheckOptionPrompt");

using macdoubles::RecordFailable;

namespace {

/// A Boolean is a number: whatever is not zero is true.
Boolean Granted(const char* name) {
  const macdoubles::Value scripted = macdoubles::SceneOf(name);
  return static_cast<Boolean>(scripted.Number(scripted.IsTrue() ? 1 : 0));
}

}  // namespace

Boolean AXIsProcessTrusted() {
  return RecordFailable("AXIsProcessTrusted") ? 0 : Granted("isTrusted");
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const id dictionary = reinterpret_cast<id>(const_cast<__CFDictionary*>(options));
  const bool fails =
      RecordFailable("AXIsProcessTrustedWithOptions", {macdoubles::ToValue(dictionary)});
  return fails ? 0 : Granted("isTrusted");
}

bool CGPreflightScreenCaptureAccess() {
  return !RecordFailable("CGPreflightScreenCaptureAccess") && Granted("mayReadScreen") != 0;
}

bool CGRequestScreenCaptureAccess() {
  return !RecordFailable("CGRequestScreenCaptureAccess") && Granted("mayReadScreen") != 0;
}
