// Texts of a thousand characters, of all the kinds that keyboards make hard.
#pragma once

#include <string>

namespace deskhand {

/// `count` characters, beginning again after the last of `alphabet`.
inline std::u32string Cycle(const std::u32string& alphabet, size_t count = 1000) {
  std::u32string text;
  while (text.size() < count) text += alphabet;
  text.resize(count);
  return text;
}

inline std::u32string Range(char32_t first, char32_t last) {
  std::u32string text;
  for (char32_t character = first; character <= last; ++character) text += character;
  return text;
}

inline std::u32string AsciiText() { return Cycle(Range(' ', '~')); }
inline std::u32string LatinText() { return Cycle(Range(0xa0, 0xff)); }
inline std::u32string GreekAndCyrillicText() {
  return Cycle(Range(0x391, 0x3a1) + Range(0x3b1, 0x3c9) + Range(0x410, 0x44f));
}
inline std::u32string DistinctIdeographs() { return Range(0x4e00, 0x4e00 + 999); }
inline std::u32string EmojiText() {
  return Cycle(
      U"\U0001f469\u200d\U0001f469\u200d\U0001f467\u200d\U0001f466 "
      U"\U0001f3f3\ufe0f\u200d\U0001f308 \U0001f44d\U0001f3fd \U0001f600 \u2764\ufe0f ");
}
inline std::u32string CombiningText() { return Cycle(U"e\u0301a\u0308o\u0302n\u0303c\u0327 x"); }
inline std::u32string RightToLeftText() {
  return Cycle(Range(0x5d0, 0x5ea) + U" " + Range(0x627, 0x63a) + U"\u200f ");
}

inline std::u16string ToUtf16(const std::u32string& text) {
  std::u16string units;
  for (const char32_t character : text) {
    if (character < 0x10000) {
      units += static_cast<char16_t>(character);
    } else {
      units += static_cast<char16_t>(0xd7c0 + (character >> 10));
      units += static_cast<char16_t>(0xdc00 + (character & 0x3ff));
    }
  }
  return units;
}

}  // namespace deskhand
