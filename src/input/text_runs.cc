#include "input/text_runs.h"

#include <algorithm>

#include "platform/input.h"

namespace deskhand {
namespace {

// What Quartz takes on one event.
constexpr size_t kLongestRun = 20;

constexpr uint16_t kTabKey = 48;
constexpr uint16_t kReturnKey = 36;

}  // namespace

TextPiece FirstPiece(std::u16string_view text) {
  if (text.front() == u'\t') return {.units = text.substr(0, 1), .key_code = kTabKey};
  if (text.starts_with(u"\r\n")) return {.units = text.substr(0, 2), .key_code = kReturnKey};
  if (text.front() == u'\r' || text.front() == u'\n') {
    return {.units = text.substr(0, 1), .key_code = kReturnKey};
  }
  return {.units = text.substr(0, std::min(text.find_first_of(u"\t\r\n"), kLongestRun))};
}

void EnterText(std::u16string_view text) {
  if (text.empty()) return;
  const platform::InputScope scope(0, text);
  while (!text.empty()) {
    const TextPiece piece = FirstPiece(text);
    if (piece.key_code) {
      platform::PostKeyEvent({.key_code = *piece.key_code, .is_down = true});
      platform::PostKeyEvent({.key_code = *piece.key_code, .is_down = false});
    } else {
      platform::PostText(piece.units);
    }
    text.remove_prefix(piece.units.size());
  }
}

}  // namespace deskhand
