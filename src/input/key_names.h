// The names of keys. Lower case only: a look-up is exact. Thread: any.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace deskhand {

/// Virtual key codes, which are positions on the ANSI keyboard, by name. The names of modifiers are
/// among them and mean the modifier's own key. Built on first use.
const std::unordered_map<std::string_view, uint16_t>& KeyCodeMap();

}  // namespace deskhand
