// The names of modifiers, and lists of them. Thread: any.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace deskhand {

/// Masks of modifier flags by name, in lower case: a look-up is exact. Left and right give the same
/// mask. Built on first use.
const std::unordered_map<std::string_view, uint64_t>& ModifierFlagMap();

/// The flags of the modifiers that `names` joins by "+", in any case. Names are not trimmed; empty
/// and unknown ones are skipped, and 0 is left when none is known.
uint64_t ParseModifiers(std::string_view names);

}  // namespace deskhand
