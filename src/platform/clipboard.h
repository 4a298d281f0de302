// The plain text on the clipboard. Texts are UTF-8. Threads: the JavaScript threads.
#pragma once

#include <optional>
#include <string>

namespace deskhand::platform {

/// None when the clipboard holds no plain text, or does not tell it in time.
std::optional<std::string> ClipboardText();

/// Empties the clipboard, whatever was on it, and takes it over.
void ClearClipboard();

/// Puts a text on the clipboard, which was cleared just before. Whether it was accepted is not
/// reported.
void SetClipboardText(const std::string& text);

}  // namespace deskhand::platform
