// Names fold their letters before they are looked up. Pure.
#pragma once

#include <string>
#include <string_view>

namespace deskhand {

/// `text` with A to Z in lower case, byte by byte; whatever the locale, nothing else changes.
inline std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& byte : lower) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return lower;
}

}  // namespace deskhand
