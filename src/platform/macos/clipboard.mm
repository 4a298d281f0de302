#include "platform/clipboard.h"

#import <AppKit/AppKit.h>

#include "platform/macos/strings.h"

namespace deskhand::platform {

std::optional<std::string> ClipboardText() {
  return ToString([NSPasteboard.generalPasteboard stringForType:NSPasteboardTypeString]);
}

void ClearClipboard() { [NSPasteboard.generalPasteboard clearContents]; }

void SetClipboardText(const std::string& text) {
  [NSPasteboard.generalPasteboard setString:ToNSString(text) forType:NSPasteboardTypeString];
}

}  // namespace deskhand::platform
