// The clipboard's plain text. Texts are UTF-8. Threads: the JavaScript threads.
#pragma once

#include <optional>
#include <string>

namespace deskhand {

/// The text up to its first U+0000; none when the clipboard holds no plain text.
std::optional<std::string> ReadClipboardText();

/// Replaces whatever is on the clipboard.
void WriteClipboardText(const std::string& text);

}  // namespace deskhand
