#include "system/clipboard.h"

#include <algorithm>

#include "platform/clipboard.h"

namespace deskhand {

std::optional<std::string> ReadClipboardText() {
  auto text = platform::ClipboardText();
  if (text) text->resize(std::min(text->size(), text->find('\0')));
  return text;
}

void WriteClipboardText(const std::string& text) {
  platform::ClearClipboard();
  platform::SetClipboardText(text);
}

}  // namespace deskhand
