#include "input/modifier_names.h"

#include <algorithm>

#include "input/lower_case.h"
#include "platform/input.h"

namespace deskhand {

const std::unordered_map<std::string_view, uint64_t>& ModifierFlagMap() {
  using namespace platform::modifier;
  // The names are literals and outlive the map.
  static const std::unordered_map<std::string_view, uint64_t> map = {
      {"shift", kShift},      {"lshift", kShift},   {"rshift", kShift},      {"control", kControl},
      {"ctrl", kControl},     {"lctrl", kControl},  {"rctrl", kControl},     {"option", kOption},
      {"alt", kOption},       {"loption", kOption}, {"roption", kOption},    {"command", kCommand},
      {"cmd", kCommand},      {"meta", kCommand},   {"super", kCommand},     {"lcommand", kCommand},
      {"rcommand", kCommand}, {"fn", kFunction},    {"function", kFunction},
  };
  return map;
}

uint64_t ParseModifiers(std::string_view names) {
  uint64_t flags = 0;
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find('+'));
    names.remove_prefix(std::min(name.size() + 1, names.size()));
    const auto found = ModifierFlagMap().find(LowerCase(name));
    if (found != ModifierFlagMap().end()) flags |= found->second;
  }
  return flags;
}

}  // namespace deskhand
