#include "platform/x11/key_codes.h"

#include <set>
#include <string>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace deskhand::platform {
namespace {

// All virtual key codes that a name stands for.
constexpr uint16_t kNamed[] = {
    0,   11,  8,   2,   14,  3,   5,   4,   34,  38,  40,  37,  46, 45, 31,  35,  12,  15,  1,
    17,  32,  9,   13,  7,   16,  6,   18,  19,  20,  21,  23,  22, 26, 28,  25,  29,  27,  24,
    33,  30,  42,  41,  39,  43,  47,  44,  50,  36,  48,  49,  51, 53, 117, 115, 119, 116, 121,
    114, 123, 124, 125, 126, 57,  56,  60,  59,  62,  58,  61,  55, 54, 63,  122, 120, 99,  118,
    96,  97,  98,  100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80,  90,  82,  83,  84,
    85,  86,  87,  88,  89,  91,  92,  69,  78,  67,  75,  65,  76, 71, 81};

xkb_keysym_t SymbolFor(uint16_t code) { return FindKeyPlace(code)->symbol; }
uint8_t PlaceOf(uint16_t code) { return FindKeyPlace(code)->keycode; }

TEST(KeyCodes, AreKnownForEveryNamedKey) {
  for (const uint16_t code : kNamed) {
    ASSERT_NE(FindKeyPlace(code), nullptr) << code;
    EXPECT_EQ(FindKeyPlace(code)->virtual_key_code, code);
  }
}

TEST(KeyCodes, AreUnknownForAnythingElse) {
  const std::set<uint16_t> named(std::begin(kNamed), std::end(kNamed));
  for (uint16_t code = 0; code < 1000; ++code) {
    EXPECT_EQ(FindKeyPlace(code) != nullptr, named.contains(code)) << code;
  }
}

TEST(KeyCodes, OfTheKeypadAreThoseOfItsSeventeenKeys) {
  const std::set<uint16_t> keypad = {65, 67, 69, 75, 76, 78, 81, 82, 83,
                                     84, 85, 86, 87, 88, 89, 91, 92};
  for (uint16_t code = 0; code < 200; ++code) {
    EXPECT_EQ(IsOnKeypad(code), keypad.contains(code)) << code;
  }
}

TEST(KeyCodes, HaveSymbolsAndPlacesOfTheirOwn) {
  std::set<xkb_keysym_t> symbols;
  std::set<uint8_t> places;
  for (const uint16_t code : kNamed) {
    const bool is_fn = code == 63, is_clear = code == 71;
    EXPECT_EQ(SymbolFor(code) == XKB_KEY_NoSymbol, is_fn) << code;
    EXPECT_EQ(PlaceOf(code) == 0, is_fn || is_clear) << code;
    EXPECT_TRUE(symbols.insert(SymbolFor(code)).second) << code;
    EXPECT_TRUE(PlaceOf(code) == 0 || places.insert(PlaceOf(code)).second) << code;
  }
}

// The rows of the keyboard, whose keycodes follow one another.
TEST(KeyCodes, OfARowHaveNeighbouringPlaces) {
  const std::vector<std::pair<std::string, uint8_t>> rows = {
      {"1234567890-=", 10}, {"qwertyuiop[]", 24}, {"asdfghjkl;'`", 38}, {"\\zxcvbnm,./", 51}};
  for (const auto& [row, first] : rows) {
    for (size_t i = 0; i < row.size(); ++i) {
      const xkb_keysym_t symbol = static_cast<unsigned char>(row[i]);  // as Latin-1 has it
      bool is_found = false;
      for (const uint16_t code : kNamed) {
        if (SymbolFor(code) != symbol) continue;
        is_found = true;
        EXPECT_EQ(PlaceOf(code), first + i) << row[i];
      }
      EXPECT_TRUE(is_found) << row[i];
    }
  }
}

TEST(KeyCodes, TellPlacesFromOtherKeycodes) {
  EXPECT_TRUE(IsKeyPlace(38));
  EXPECT_TRUE(IsKeyPlace(197));
  EXPECT_FALSE(IsKeyPlace(0));
  EXPECT_FALSE(IsKeyPlace(77));
}

}  // namespace
}  // namespace deskhand::platform
