// Characters of UTF-16 text. Pure; one thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace deskhand::platform {

/// What stands for half a surrogate pair.
constexpr char32_t kReplacement = 0xfffd;

inline bool IsHighSurrogate(char16_t unit) { return (unit & 0xfc00) == 0xd800; }
inline bool IsLowSurrogate(char16_t unit) { return (unit & 0xfc00) == 0xdc00; }

/// Takes the first character off `text`, which is not empty.
inline char32_t TakeCharacter(std::u16string_view* text) {
  const char16_t first = text->front();
  text->remove_prefix(1);
  if (!IsHighSurrogate(first)) return IsLowSurrogate(first) ? kReplacement : first;
  if (text->empty() || !IsLowSurrogate(text->front())) return kReplacement;
  const char16_t low = text->front();
  text->remove_prefix(1);
  return 0x10000 + ((char32_t{first} & 0x3ff) << 10) + (low & 0x3ff);
}

/// Puts together what was cut between two runs.
class RunReader {
 public:
  /// The characters of `run`. A half at its end is kept for the next run unless `next`, the unit
  /// after the run where it is known, is not its other half.
  std::u32string Read(std::u16string_view run, std::optional<char16_t> next) {
    std::u16string units = std::exchange(half_, {});
    units += run;
    const bool may_go_on = !next || IsLowSurrogate(*next);
    if (!units.empty() && IsHighSurrogate(units.back()) && may_go_on) {
      half_ = units.back();
      units.pop_back();
    }
    std::u32string characters;
    for (std::u16string_view left = units; !left.empty();) characters += TakeCharacter(&left);
    return characters;
  }

  /// What is left when there are no more runs.
  std::u32string End() { return Read({}, u' '); }

 private:
  std::u16string half_;
};

}  // namespace deskhand::platform
