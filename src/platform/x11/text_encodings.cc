#include "platform/x11/text_encodings.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace deskhand::platform {
namespace {

constexpr std::string_view kReplacementCharacter = "\xef\xbf\xbd";

bool IsAscii(char unit) { return static_cast<uint8_t>(unit) < 0x80; }

/// What may follow a first byte, see table 3-7 of the Unicode standard.
struct Lead {
  size_t length = 0;      // of the whole character; 0 when none begins so
  uint8_t lowest = 0x80;  // of the second byte; all others are from 0x80 to 0xbf
  uint8_t highest = 0xbf;
};

Lead LeadOf(uint8_t first) {
  if (first < 0x80) return {1};
  if (first < 0xc2) return {};
  if (first < 0xe0) return {2};
  if (first == 0xe0) return {3, 0xa0, 0xbf};  // no longer than need be
  if (first == 0xed) return {3, 0x80, 0x9f};  // no surrogates
  if (first < 0xf0) return {3};
  if (first == 0xf0) return {4, 0x90, 0xbf};
  if (first < 0xf4) return {4};
  if (first == 0xf4) return {4, 0x80, 0x8f};  // none above U+10FFFF
  return {};
}

/// How many bytes from the start of `text`, which is not empty, are a character, or could be the
/// beginning of one; `is_whole` tells which.
size_t TakeUnit(std::string_view text, bool* is_whole) {
  const Lead lead = LeadOf(static_cast<uint8_t>(text.front()));
  *is_whole = false;
  if (lead.length == 0) return 1;
  size_t length = 1;
  for (; length < lead.length && length < text.size(); ++length) {
    const auto byte = static_cast<uint8_t>(text[length]);
    const uint8_t lowest = length == 1 ? lead.lowest : 0x80;
    const uint8_t highest = length == 1 ? lead.highest : 0xbf;
    if (byte < lowest || byte > highest) return length;
  }
  *is_whole = length == lead.length;
  return length;
}

}  // namespace

std::string RepairedUtf8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  while (!text.empty()) {
    const auto plain_end =
        std::find_if_not(text.begin(), text.end(), [](char unit) { return IsAscii(unit); });
    repaired.append(text.begin(), plain_end);
    text.remove_prefix(plain_end - text.begin());
    if (text.empty()) break;
    bool is_whole = false;
    const size_t length = TakeUnit(text, &is_whole);
    repaired += is_whole ? text.substr(0, length) : kReplacementCharacter;
    text.remove_prefix(length);
  }
  return repaired;
}

std::string Utf8FromLatin1(std::string_view latin1) {
  std::string utf8;
  utf8.reserve(latin1.size());
  for (const char unit : latin1) {
    const auto character = static_cast<uint8_t>(unit);
    if (IsAscii(unit)) {
      utf8 += unit;
    } else {
      utf8 += static_cast<char>(0xc0 | character >> 6);
      utf8 += static_cast<char>(0x80 | (character & 0x3f));
    }
  }
  return utf8;
}

std::string Latin1FromUtf8(std::string_view utf8) {
  std::string latin1;
  latin1.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size();) {
    const auto first = static_cast<uint8_t>(utf8[i]);
    const size_t length = std::max<size_t>(LeadOf(first).length, 1);
    if (first < 0x80) {
      latin1 += utf8[i];
    } else if (length == 2 && first <= 0xc3 && i + 1 < utf8.size()) {
      latin1 += static_cast<char>((first & 0x03) << 6 | (static_cast<uint8_t>(utf8[i + 1]) & 0x3f));
    } else {
      latin1 += '?';
    }
    i += length;
  }
  return latin1;
}

}  // namespace deskhand::platform
