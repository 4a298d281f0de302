#include "input/modifier_names.h"

#include <gtest/gtest.h>

#include "input/key_names.h"

namespace deskhand {
namespace {

struct NamedMask {
  uint64_t mask;
  const char* name;
};

constexpr NamedMask kModifiers[] = {
    {0x20000, "shift"},     {0x20000, "lshift"},  {0x20000, "rshift"},    {0x40000, "control"},
    {0x40000, "ctrl"},      {0x40000, "lctrl"},   {0x40000, "rctrl"},     {0x80000, "option"},
    {0x80000, "alt"},       {0x80000, "loption"}, {0x80000, "roption"},   {0x100000, "command"},
    {0x100000, "cmd"},      {0x100000, "meta"},   {0x100000, "super"},    {0x100000, "lcommand"},
    {0x100000, "rcommand"}, {0x800000, "fn"},     {0x800000, "function"},
};

TEST(ModifierNamesTest, ThereAre19NamesAndNoOthers) {
  EXPECT_EQ(std::size(kModifiers), 19u);
  EXPECT_EQ(ModifierFlagMap().size(), 19u);
}

TEST(ModifierNamesTest, EveryNameHasItsMask) {
  for (const auto& [mask, name] : kModifiers) {
    ASSERT_TRUE(ModifierFlagMap().contains(name)) << name;
    EXPECT_EQ(ModifierFlagMap().at(name), mask) << name;
  }
}

TEST(ModifierNamesTest, LeftAndRightShiftAreTwoKeysAndOneMask) {
  EXPECT_EQ(KeyCodeMap().at("shift"), 56);
  EXPECT_EQ(KeyCodeMap().at("lshift"), 56);
  EXPECT_EQ(KeyCodeMap().at("rshift"), 60);
  for (const char* name : {"shift", "lshift", "rshift"}) {
    EXPECT_EQ(ModifierFlagMap().at(name), 0x20000u);
  }
}

TEST(ModifierNamesTest, MetaAndSuperAreCommand) {
  for (const char* name : {"meta", "super"}) {
    EXPECT_EQ(ModifierFlagMap().at(name), 0x100000u);
    EXPECT_EQ(KeyCodeMap().at(name), 55);
  }
}

TEST(ModifierNamesTest, CapsLockIsAKeyAndNoModifier) {
  EXPECT_EQ(KeyCodeMap().at("capslock"), 57);
  EXPECT_FALSE(ModifierFlagMap().contains("capslock"));
}

TEST(ModifierNamesTest, ALookUpIsExact) {
  for (const char* name : {"Shift", "SHIFT", "shifT", " shift", "shift ", "f21", "+", ""}) {
    EXPECT_FALSE(ModifierFlagMap().contains(name)) << name;
  }
}

TEST(ParseModifiersTest, NamesJoinedByPlusAddUp) {
  EXPECT_EQ(ParseModifiers("shift"), 0x20000u);
  EXPECT_EQ(ParseModifiers("cmd+shift"), 0x120000u);
  EXPECT_EQ(ParseModifiers("shift+ctrl+alt+meta+fn"), 0x9e0000u);
  EXPECT_EQ(ParseModifiers("shift+rshift"), 0x20000u);
}

TEST(ParseModifiersTest, CaseDoesNotMatter) { EXPECT_EQ(ParseModifiers("CMD+Shift"), 0x120000u); }

TEST(ParseModifiersTest, EmptyNamesAreSkipped) {
  for (const char* names : {"+cmd", "cmd+", "cmd++shift", "++cmd+++shift++"}) {
    EXPECT_NE(ParseModifiers(names) & 0x100000, 0u) << names;
  }
  EXPECT_EQ(ParseModifiers("cmd++shift"), 0x120000u);
}

TEST(ParseModifiersTest, UnknownNamesAreSkipped) {
  EXPECT_EQ(ParseModifiers("hyper+cmd+a"), 0x100000u);
  EXPECT_EQ(ParseModifiers("capslock"), 0u);
}

TEST(ParseModifiersTest, SpacesAreNotTrimmed) {
  EXPECT_EQ(ParseModifiers("cmd +shift"), 0x20000u);
  EXPECT_EQ(ParseModifiers(" cmd"), 0u);
}

TEST(ParseModifiersTest, NothingIsNothing) {
  for (const char* names : {"", "+", "+++"}) EXPECT_EQ(ParseModifiers(names), 0u) << names;
}

}  // namespace
}  // namespace deskhand
