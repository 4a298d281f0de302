#include "platform/x11/key_codes.h"

#include <algorithm>
#include <iterator>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace deskhand::platform {
namespace {

constexpr KeyPlace kPlaces[] = {
    // Letters.
    {0, 38, XKB_KEY_a},
    {11, 56, XKB_KEY_b},
    {8, 54, XKB_KEY_c},
    {2, 40, XKB_KEY_d},
    {14, 26, XKB_KEY_e},
    {3, 41, XKB_KEY_f},
    {5, 42, XKB_KEY_g},
    {4, 43, XKB_KEY_h},
    {34, 31, XKB_KEY_i},
    {38, 44, XKB_KEY_j},
    {40, 45, XKB_KEY_k},
    {37, 46, XKB_KEY_l},
    {46, 58, XKB_KEY_m},
    {45, 57, XKB_KEY_n},
    {31, 32, XKB_KEY_o},
    {35, 33, XKB_KEY_p},
    {12, 24, XKB_KEY_q},
    {15, 27, XKB_KEY_r},
    {1, 39, XKB_KEY_s},
    {17, 28, XKB_KEY_t},
    {32, 30, XKB_KEY_u},
    {9, 55, XKB_KEY_v},
    {13, 25, XKB_KEY_w},
    {7, 53, XKB_KEY_x},
    {16, 29, XKB_KEY_y},
    {6, 52, XKB_KEY_z},
    // Digits and punctuation.
    {18, 10, XKB_KEY_1},
    {19, 11, XKB_KEY_2},
    {20, 12, XKB_KEY_3},
    {21, 13, XKB_KEY_4},
    {23, 14, XKB_KEY_5},
    {22, 15, XKB_KEY_6},
    {26, 16, XKB_KEY_7},
    {28, 17, XKB_KEY_8},
    {25, 18, XKB_KEY_9},
    {29, 19, XKB_KEY_0},
    {27, 20, XKB_KEY_minus},
    {24, 21, XKB_KEY_equal},
    {33, 34, XKB_KEY_bracketleft},
    {30, 35, XKB_KEY_bracketright},
    {42, 51, XKB_KEY_backslash},
    {41, 47, XKB_KEY_semicolon},
    {39, 48, XKB_KEY_apostrophe},
    {43, 59, XKB_KEY_comma},
    {47, 60, XKB_KEY_period},
    {44, 61, XKB_KEY_slash},
    {50, 49, XKB_KEY_grave},
    // Editing and navigation.
    {36, 36, XKB_KEY_Return},
    {48, 23, XKB_KEY_Tab},
    {49, 65, XKB_KEY_space},
    {51, 22, XKB_KEY_BackSpace},
    {53, 9, XKB_KEY_Escape},
    {117, 119, XKB_KEY_Delete},
    {115, 110, XKB_KEY_Home},
    {119, 115, XKB_KEY_End},
    {116, 112, XKB_KEY_Prior},
    {121, 117, XKB_KEY_Next},
    {114, 146, XKB_KEY_Help},
    {123, 113, XKB_KEY_Left},
    {124, 114, XKB_KEY_Right},
    {125, 116, XKB_KEY_Down},
    {126, 111, XKB_KEY_Up},
    {57, 66, XKB_KEY_Caps_Lock},
    // Modifiers.
    {56, 50, XKB_KEY_Shift_L},
    {60, 62, XKB_KEY_Shift_R},
    {59, 37, XKB_KEY_Control_L},
    {62, 105, XKB_KEY_Control_R},
    {58, 64, XKB_KEY_Alt_L},
    {61, 108, XKB_KEY_Alt_R},
    {55, 133, XKB_KEY_Super_L},
    {54, 134, XKB_KEY_Super_R},
    {63, 0, XKB_KEY_NoSymbol},
    // Function keys.
    {122, 67, XKB_KEY_F1},
    {120, 68, XKB_KEY_F2},
    {99, 69, XKB_KEY_F3},
    {118, 70, XKB_KEY_F4},
    {96, 71, XKB_KEY_F5},
    {97, 72, XKB_KEY_F6},
    {98, 73, XKB_KEY_F7},
    {100, 74, XKB_KEY_F8},
    {101, 75, XKB_KEY_F9},
    {109, 76, XKB_KEY_F10},
    {103, 95, XKB_KEY_F11},
    {111, 96, XKB_KEY_F12},
    {105, 191, XKB_KEY_F13},
    {107, 192, XKB_KEY_F14},
    {113, 193, XKB_KEY_F15},
    {106, 194, XKB_KEY_F16},
    {64, 195, XKB_KEY_F17},
    {79, 196, XKB_KEY_F18},
    {80, 197, XKB_KEY_F19},
    {90, 198, XKB_KEY_F20},
    // The keypad. Its digits are on the second level of their keys, and found by their places.
    {82, 90, XKB_KEY_KP_0},
    {83, 87, XKB_KEY_KP_1},
    {84, 88, XKB_KEY_KP_2},
    {85, 89, XKB_KEY_KP_3},
    {86, 83, XKB_KEY_KP_4},
    {87, 84, XKB_KEY_KP_5},
    {88, 85, XKB_KEY_KP_6},
    {89, 79, XKB_KEY_KP_7},
    {91, 80, XKB_KEY_KP_8},
    {92, 81, XKB_KEY_KP_9},
    {69, 86, XKB_KEY_KP_Add},
    {78, 82, XKB_KEY_KP_Subtract},
    {67, 63, XKB_KEY_KP_Multiply},
    {75, 106, XKB_KEY_KP_Divide},
    {65, 91, XKB_KEY_KP_Decimal},
    {76, 104, XKB_KEY_KP_Enter},
    // In its place is Num Lock, which must not be pressed instead.
    {71, 0, XKB_KEY_Clear},
    {81, 125, XKB_KEY_KP_Equal},
};

}  // namespace

const KeyPlace* FindKeyPlace(uint16_t virtual_key_code) {
  const auto found = std::find_if(
      std::begin(kPlaces), std::end(kPlaces),
      [=](const KeyPlace& place) { return place.virtual_key_code == virtual_key_code; });
  return found == std::end(kPlaces) ? nullptr : found;
}

bool IsOnKeypad(uint16_t virtual_key_code) {
  const KeyPlace* const place = FindKeyPlace(virtual_key_code);
  return place && place->symbol >= XKB_KEY_KP_Space && place->symbol <= XKB_KEY_KP_Equal;
}

bool IsKeyPlace(uint8_t keycode) {
  return std::any_of(std::begin(kPlaces), std::end(kPlaces), [=](const KeyPlace& place) {
    return place.keycode == keycode && keycode != 0;
  });
}

}  // namespace deskhand::platform
