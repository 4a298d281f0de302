#include "input/key_names.h"

#include <cctype>
#include <string>

#include <gtest/gtest.h>

#include "input/modifier_names.h"

namespace deskhand {
namespace {

struct NamedKey {
  uint16_t code;
  const char* name;
};

// By code, as a list of virtual key codes has them.
// clang-format off
constexpr NamedKey kKeys[] = {
    {0, "a"}, {1, "s"}, {2, "d"}, {3, "f"}, {4, "h"}, {5, "g"}, {6, "z"}, {7, "x"}, {8, "c"},
    {9, "v"}, {11, "b"}, {12, "q"}, {13, "w"}, {14, "e"}, {15, "r"}, {16, "y"}, {17, "t"},
    {18, "1"}, {19, "2"}, {20, "3"}, {21, "4"}, {22, "6"}, {23, "5"}, {24, "="}, {25, "9"},
    {26, "7"}, {27, "-"}, {28, "8"}, {29, "0"}, {30, "]"}, {31, "o"}, {32, "u"}, {33, "["},
    {34, "i"}, {35, "p"}, {36, "return"}, {36, "enter"}, {37, "l"}, {38, "j"}, {39, "'"},
    {40, "k"}, {41, ";"}, {42, "\\"}, {43, ","}, {44, "/"}, {45, "n"}, {46, "m"}, {47, "."},
    {48, "tab"}, {49, "space"}, {50, "`"}, {51, "backspace"}, {51, "delete"}, {53, "escape"},
    {53, "esc"}, {54, "rcommand"}, {55, "command"}, {55, "cmd"}, {55, "meta"}, {55, "super"},
    {55, "lcommand"}, {56, "shift"}, {56, "lshift"}, {57, "capslock"}, {58, "loption"},
    {58, "option"}, {58, "alt"}, {59, "control"}, {59, "ctrl"}, {59, "lctrl"}, {60, "rshift"},
    {61, "roption"}, {62, "rctrl"}, {63, "fn"}, {63, "function"}, {64, "f17"}, {65, "decimal"},
    {67, "multiply"}, {69, "add"}, {71, "numpadclear"}, {75, "divide"}, {76, "numpadenter"},
    {78, "subtract"}, {79, "f18"}, {80, "f19"}, {81, "numpadequals"}, {82, "numpad0"},
    {83, "numpad1"}, {84, "numpad2"}, {85, "numpad3"}, {86, "numpad4"}, {87, "numpad5"},
    {88, "numpad6"}, {89, "numpad7"}, {90, "f20"}, {91, "numpad8"}, {92, "numpad9"}, {96, "f5"},
    {97, "f6"}, {98, "f7"}, {99, "f3"}, {100, "f8"}, {101, "f9"}, {103, "f11"}, {105, "f13"},
    {106, "f16"}, {107, "f14"}, {109, "f10"}, {111, "f12"}, {113, "f15"}, {114, "help"},
    {115, "home"}, {116, "pageup"}, {117, "forwarddelete"}, {118, "f4"}, {119, "end"},
    {120, "f2"}, {121, "pagedown"}, {122, "f1"}, {123, "left"}, {123, "leftarrow"},
    {124, "right"}, {124, "rightarrow"}, {125, "down"}, {125, "downarrow"}, {126, "up"},
    {126, "uparrow"},
};
// clang-format on

TEST(KeyNamesTest, ThereAre127NamesAndNoOthers) {
  EXPECT_EQ(std::size(kKeys), 127u);
  EXPECT_EQ(KeyCodeMap().size(), 127u);
}

TEST(KeyNamesTest, EveryNameHasItsCode) {
  for (const auto& [code, name] : kKeys) {
    ASSERT_TRUE(KeyCodeMap().contains(name)) << name;
    EXPECT_EQ(KeyCodeMap().at(name), code) << name;
  }
}

TEST(KeyNamesTest, NamesAreInLowerCase) {
  for (const auto& [name, code] : KeyCodeMap()) {
    for (const char letter : name) EXPECT_FALSE(std::isupper(letter)) << name;
  }
}

TEST(KeyNamesTest, EveryModifierIsAKeyToo) {
  for (const auto& [name, mask] : ModifierFlagMap()) EXPECT_TRUE(KeyCodeMap().contains(name));
}

TEST(KeyNamesTest, EnterIsReturnAndNotTheKeypads) {
  EXPECT_EQ(KeyCodeMap().at("enter"), 36);
  EXPECT_EQ(KeyCodeMap().at("return"), 36);
  EXPECT_EQ(KeyCodeMap().at("numpadenter"), 76);
}

TEST(KeyNamesTest, DeleteIsBackspaceAndNotForwardDelete) {
  EXPECT_EQ(KeyCodeMap().at("delete"), 51);
  EXPECT_EQ(KeyCodeMap().at("backspace"), 51);
  EXPECT_EQ(KeyCodeMap().at("forwarddelete"), 117);
}

TEST(KeyNamesTest, ArrowsHaveTwoNames) {
  const auto& keys = KeyCodeMap();
  for (const auto& [code, name] :
       {NamedKey{123, "left"}, {124, "right"}, {125, "down"}, {126, "up"}}) {
    EXPECT_EQ(keys.at(name), code);
    EXPECT_EQ(keys.at(std::string(name) + "arrow"), code);
  }
}

TEST(KeyNamesTest, F20LiesBetweenSevenAndEightOfTheKeypad) {
  EXPECT_EQ(KeyCodeMap().at("numpad7"), 89);
  EXPECT_EQ(KeyCodeMap().at("f20"), 90);
  EXPECT_EQ(KeyCodeMap().at("numpad8"), 91);
}

TEST(KeyNamesTest, ALookUpIsExact) {
  for (const char* name : {"Shift", "SHIFT", "shifT", " shift", "shift ", "f21", "f0", "A", "+", "",
                           "!", ":", "?", "numpad10", "plus"}) {
    EXPECT_FALSE(KeyCodeMap().contains(name)) << name;
  }
}

}  // namespace
}  // namespace deskhand
