#include "input/key_names.h"

namespace deskhand {

// The names are literals and outlive the map. The codes are those of HIToolbox.
// clang-format off
const std::unordered_map<std::string_view, uint16_t>& KeyCodeMap() {
  static const std::unordered_map<std::string_view, uint16_t> map = {
      // Letters, as they lie on the keyboard.
      {"a", 0}, {"s", 1}, {"d", 2}, {"f", 3}, {"h", 4}, {"g", 5}, {"z", 6}, {"x", 7}, {"c", 8},
      {"v", 9}, {"b", 11}, {"q", 12}, {"w", 13}, {"e", 14}, {"r", 15}, {"y", 16}, {"t", 17},
      {"o", 31}, {"u", 32}, {"i", 34}, {"p", 35}, {"l", 37}, {"j", 38}, {"k", 40}, {"n", 45},
      {"m", 46},

      // Digits of the main row.
      {"1", 18}, {"2", 19}, {"3", 20}, {"4", 21}, {"5", 23}, {"6", 22}, {"7", 26}, {"8", 28},
      {"9", 25}, {"0", 29},

      // Punctuation: the character without Shift.
      {"-", 27}, {"=", 24}, {"[", 33}, {"]", 30}, {"\\", 42}, {";", 41}, {"'", 39}, {",", 43},
      {".", 47}, {"/", 44}, {"`", 50},

      // Editing, navigation and system keys. Enter is the main Return key, and Delete the one that
      // deletes backwards.
      {"return", 36}, {"enter", 36}, {"tab", 48}, {"space", 49}, {"backspace", 51}, {"delete", 51},
      {"escape", 53}, {"esc", 53}, {"forwarddelete", 117}, {"home", 115}, {"end", 119},
      {"pageup", 116}, {"pagedown", 121}, {"help", 114}, {"left", 123}, {"leftarrow", 123},
      {"right", 124}, {"rightarrow", 124}, {"down", 125}, {"downarrow", 125}, {"up", 126},
      {"uparrow", 126}, {"capslock", 57},

      // Modifiers; without a side, the left one.
      {"shift", 56}, {"lshift", 56}, {"rshift", 60}, {"control", 59}, {"ctrl", 59}, {"lctrl", 59},
      {"rctrl", 62}, {"option", 58}, {"alt", 58}, {"loption", 58}, {"roption", 61},
      {"command", 55}, {"cmd", 55}, {"meta", 55}, {"super", 55}, {"lcommand", 55},
      {"rcommand", 54}, {"fn", 63}, {"function", 63},

      // Function keys.
      {"f1", 122}, {"f2", 120}, {"f3", 99}, {"f4", 118}, {"f5", 96}, {"f6", 97}, {"f7", 98},
      {"f8", 100}, {"f9", 101}, {"f10", 109}, {"f11", 103}, {"f12", 111}, {"f13", 105},
      {"f14", 107}, {"f15", 113}, {"f16", 106}, {"f17", 64}, {"f18", 79}, {"f19", 80}, {"f20", 90},

      // Keypad.
      {"numpad0", 82}, {"numpad1", 83}, {"numpad2", 84}, {"numpad3", 85}, {"numpad4", 86},
      {"numpad5", 87}, {"numpad6", 88}, {"numpad7", 89}, {"numpad8", 91}, {"numpad9", 92},
      {"add", 69}, {"subtract", 78}, {"multiply", 67}, {"divide", 75}, {"decimal", 65},
      {"numpadenter", 76}, {"numpadclear", 71}, {"numpadequals", 81},
  };
  return map;
}
// clang-format on

}  // namespace deskhand
