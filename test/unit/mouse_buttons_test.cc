#include "input/mouse_buttons.h"

#include <array>

#include <gtest/gtest.h>

#include "input/lower_case.h"

namespace deskhand {
namespace {

/// Button, press, release, drag.
std::array<uint32_t, 4> Numbers(const MouseButtonInfo& info) {
  return {static_cast<uint32_t>(info.button), static_cast<uint32_t>(info.down_type),
          static_cast<uint32_t>(info.up_type), static_cast<uint32_t>(info.drag_type)};
}

constexpr std::array<uint32_t, 4> kLeft = {0, 1, 2, 6};
constexpr std::array<uint32_t, 4> kRight = {1, 3, 4, 7};
constexpr std::array<uint32_t, 4> kMiddle = {2, 25, 26, 27};

TEST(MouseButtonsTest, RightAndOneAreTheRightButton) {
  for (const char* name : {"right", "1"}) EXPECT_EQ(Numbers(ParseMouseButton(name)), kRight);
}

TEST(MouseButtonsTest, MiddleAndTwoAreTheMiddleButton) {
  for (const char* name : {"middle", "2"}) EXPECT_EQ(Numbers(ParseMouseButton(name)), kMiddle);
}

TEST(MouseButtonsTest, AnythingElseIsTheLeftButton) {
  for (const char* name :
       {"left", "0", "", "center", "centre", "middle ", "right ", " right", "11", "3", "wheel"}) {
    EXPECT_EQ(Numbers(ParseMouseButton(name)), kLeft) << name;
  }
}

TEST(MouseButtonsTest, ANameIsInLowerCaseAlready) {
  for (const char* name : {"Right", "RIGHT", "Middle"}) {
    EXPECT_EQ(Numbers(ParseMouseButton(name)), kLeft) << name;
  }
}

TEST(MouseButtonsTest, ANulByteIsPartOfTheName) {
  EXPECT_EQ(Numbers(ParseMouseButton(std::string_view("right\0", 6))), kLeft);
}

TEST(LowerCaseTest, ChangesTheLettersOfAsciiAndNothingElse) {
  EXPECT_EQ(LowerCase("MiDdLe"), "middle");
  EXPECT_EQ(LowerCase("@AZ[`az{ 09"), "@az[`az{ 09");
  EXPECT_EQ(LowerCase("\xc3\x89\xff"), "\xc3\x89\xff");
  EXPECT_EQ(LowerCase(std::string_view("A\0B", 3)), std::string_view("a\0b", 3));
}

}  // namespace
}  // namespace deskhand
