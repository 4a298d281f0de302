// Typing: text goes out in runs, tabs and line breaks as keys.
// Thread: the JavaScript thread; nothing pauses.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace deskhand {

/// What one key types.
struct TextPiece {
  std::u16string_view units;              // the part of the text that it stands for
  std::optional<uint16_t> key_code = {};  // virtual key code of Tab or Return; absent for a run
};

/// The first piece of `text`, which must not be empty: a tab, a line break (a carriage return with
/// a line feed is one), or a run of at most 20 units of anything else. Runs are cut by the count of
/// units alone, surrogate pairs too.
TextPiece FirstPiece(std::u16string_view text);

/// Types UTF-16 text into whatever has the keyboard focus.
void EnterText(std::u16string_view text);

}  // namespace deskhand
