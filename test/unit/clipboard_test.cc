#include "system/clipboard.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"

namespace deskhand {
namespace {

using platform::FakeApplications;
using Calls = std::vector<std::string>;

class ClipboardTest : public testing::Test {
 protected:
  void SetUp() override { FakeApplications::Reset(); }
  static FakeApplications& mac() { return FakeApplications::Get(); }
};

TEST_F(ClipboardTest, NoTextIsNone) { EXPECT_FALSE(ReadClipboardText()); }

TEST_F(ClipboardTest, AnEmptyTextIsAText) {
  WriteClipboardText("");
  EXPECT_EQ(ReadClipboardText(), "");
}

TEST_F(ClipboardTest, ATextEndsAtItsFirstNulWhenItIsRead) {
  mac().clipboard = std::string("ab\0cd", 5);
  EXPECT_EQ(ReadClipboardText(), "ab");
}

TEST_F(ClipboardTest, TheClipboardIsClearedBeforeATextIsPutOnIt) {
  WriteClipboardText("text");
  EXPECT_EQ(mac().calls, (Calls{"clear clipboard", "set clipboard"}));
}

TEST_F(ClipboardTest, ATextIsPutOnTheClipboardWhole) {
  const std::string text("a\0\xF0\x9F\x98\x80", 6);
  WriteClipboardText(text);
  EXPECT_EQ(mac().clipboard, text);
}

}  // namespace
}  // namespace deskhand
