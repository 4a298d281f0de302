#include "input/chord.h"

#include <optional>
#include <string>
#include <vector>

#include "input/key_names.h"
#include "input/lower_case.h"
#include "input/modifier_names.h"

namespace deskhand {
namespace {

/// The words between the "+", without spaces and in lower case; no empty ones.
std::vector<std::string> SplitWords(std::string_view chord) {
  std::vector<std::string> words;
  std::string word;
  for (size_t position = 0; position <= chord.size(); ++position) {
    if (position < chord.size() && chord[position] != '+') {
      if (chord[position] != ' ') word += chord[position];
      continue;
    }
    if (!word.empty()) words.push_back(LowerCase(word));
    word.clear();
  }
  return words;
}

std::optional<uint16_t> FindKey(const std::string& word) {
  const auto found = KeyCodeMap().find(word);
  if (found == KeyCodeMap().end()) return std::nullopt;
  return found->second;
}

}  // namespace

ParsedChord ParseChord(std::string_view chord) {
  const std::vector<std::string> words = SplitWords(chord);
  ParsedChord parsed;
  std::optional<uint16_t> key;
  for (const std::string& word : words) {
    const auto modifier = ModifierFlagMap().find(word);
    if (modifier != ModifierFlagMap().end()) {
      parsed.flags |= modifier->second;
    } else if (const auto named = FindKey(word)) {
      key = named;
    }
  }
  // Without another key, the last word can only be a modifier if it is a key at all.
  if (!key && !words.empty()) key = FindKey(words.back());
  if (key) {
    parsed.key_code = *key;
    parsed.has_key = true;
  }
  return parsed;
}

}  // namespace deskhand
