// A chord: one key and any number of modifiers, written "cmd+shift+t". Pure.
#pragma once

#include <cstdint>
#include <string_view>

namespace deskhand {

struct ParsedChord {
  uint64_t flags = 0;     // of all the modifiers that are named
  uint16_t key_code = 0;  // virtual key code; means nothing without has_key
  bool has_key = false;
};

/// Reads UTF-8 text. Case and spaces do not matter, "+" always separates, unknown words are
/// skipped, and of several keys the last one counts. Modifiers alone are a press of the last one,
/// if that is the last word.
ParsedChord ParseChord(std::string_view chord);

}  // namespace deskhand
