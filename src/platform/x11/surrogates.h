// Characters of UTF-16 text. Pure; any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace deskhand::platform {

/// What stands for half a surrogate pair.
constexpr char32_t kReplacement = 0xfffd;

inline bool IsHighSurrogate(char16_t unit) { return (unit & 0xfc00) == 0xd800; }
inline bool IsLowSurrogate(char16_t unit) { return (unit & 0xfc00) == 0xdc00; }

inline char32_t JoinSurrogates(char16_t high, char16_t low) {
  return 0x10000 + ((char32_t{high} & 0x3ff) << 10) + (low & 0x3ff);
}

/// Takes the first character off `text`, which is not empty.
inline char32_t TakeCharacter(std::u16string_view* text) {
  const char16_t first = text->front();
  text->remove_prefix(1);
  if (IsHighSurrogate(first) && !text->empty() && IsLowSurrogate(text->front())) {
    const char16_t low = text->front();
    text->remove_prefix(1);
    return JoinSurrogates(first, low);
  }
  return IsHighSurrogate(first) || IsLowSurrogate(first) ? kReplacement : first;
}

}  // namespace deskhand::platform
