#include "platform/x11/text_encodings.h"

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

constexpr char kBad[] = "\xef\xbf\xbd";

TEST(RepairedUtf8, LeavesValidTextAsItIs) {
  for (const std::string_view text :
       {"", "plain", "h\xc3\xa4llo", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "\xed\x9f\xbf\xee\x80\x80",
        "\xf4\x8f\xbf\xbf", "\xef\xbf\xbd"}) {
    EXPECT_EQ(RepairedUtf8(text), text);
  }
  const std::string_view with_zero("a\0b", 3);
  EXPECT_EQ(RepairedUtf8(with_zero), with_zero);
}

TEST(RepairedUtf8, HasOneReplacementForEachBrokenCharacter) {
  const std::string bad = kBad;
  EXPECT_EQ(RepairedUtf8("\xff"
                         "a"),
            bad + "a");
  EXPECT_EQ(RepairedUtf8("a\x80\x80"
                         "b"),
            "a" + bad + bad + "b");
  EXPECT_EQ(RepairedUtf8("\xe2\x82"), bad);  // cut off
  EXPECT_EQ(RepairedUtf8("\xe2\x82"
                         "a"),
            bad + "a");
  EXPECT_EQ(RepairedUtf8("\xf0\x9f\x98\xe2\x82\xac"), bad + "\xe2\x82\xac");
}

TEST(RepairedUtf8, RefusesWhatLooksLikeCharactersAndIsNone) {
  const std::string bad = kBad;
  EXPECT_EQ(RepairedUtf8("\xc0\xaf"), bad + bad);                      // too long
  EXPECT_EQ(RepairedUtf8("\xe0\x80\xaf"), bad + bad + bad);            // too long
  EXPECT_EQ(RepairedUtf8("\xed\xa0\x80"), bad + bad + bad);            // a surrogate
  EXPECT_EQ(RepairedUtf8("\xf4\x90\x80\x80"), bad + bad + bad + bad);  // above U+10FFFF
  EXPECT_EQ(RepairedUtf8("\xf5\x80"), bad + bad);
}

TEST(Latin1, ComesBackTheSameFromUtf8) {
  std::string all;
  for (int character = 0; character < 256; ++character) all += static_cast<char>(character);
  const std::string utf8 = Utf8FromLatin1(all);
  EXPECT_EQ(utf8.size(), 128u + 2 * 128u);
  EXPECT_EQ(Latin1FromUtf8(utf8), all);
}

TEST(Latin1, HasAQuestionMarkForEachOtherCharacter) {
  EXPECT_EQ(Latin1FromUtf8("f\xc3\xbcr 5 \xe2\x82\xac \xf0\x9f\x98\x80 \xc4\x80"),
            "f\xfcr 5 ? ? ?");
}

}  // namespace
}  // namespace deskhand::platform
