#include "input/text_runs.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakePlatform;
using Lines = std::vector<std::string>;

/// What is posted for a text, without the scope around it.
Lines Typed(std::u16string_view text) {
  FakePlatform::Reset();
  EnterText(text);
  Lines lines = FakePlatform::Get().input;
  if (lines.size() < 2) return {"no scope"};
  EXPECT_EQ(lines.front().substr(0, 5), "begin");
  EXPECT_EQ(lines.back(), "end");
  return {lines.begin() + 1, lines.end() - 1};
}

const Lines kTab = {"key 48 down", "key 48 up"};
const Lines kReturn = {"key 36 down", "key 36 up"};

Lines operator+(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

TEST(TextRunsTest, NoTextIsNothingAndOpensNoScope) {
  FakePlatform::Reset();
  EnterText(u"");
  EXPECT_EQ(FakePlatform::Get().input, Lines{});
}

TEST(TextRunsTest, TheWholeTextIsAnnouncedOnce) {
  FakePlatform::Reset();
  EnterText(u"one\ntwo");
  EXPECT_EQ(FakePlatform::Get().input.front(), "begin 'one<a>two'");
  EXPECT_EQ(FakePlatform::Get().input.size(), 6u);
}

TEST(TextRunsTest, AWordIsOneRun) { EXPECT_EQ(Typed(u"hello"), Lines{"text 'hello'"}); }

TEST(TextRunsTest, ALongTextIsCutIntoRunsOfTwenty) {
  EXPECT_EQ(Typed(std::u16string(45, u'x')),
            (Lines{"text 'xxxxxxxxxxxxxxxxxxxx'", "text 'xxxxxxxxxxxxxxxxxxxx'", "text 'xxxxx'"}));
  EXPECT_EQ(Typed(std::u16string(20, u'x')).size(), 1u);
  EXPECT_EQ(Typed(std::u16string(21, u'x')).size(), 2u);
}

TEST(TextRunsTest, ATabIsAKeyBetweenRuns) {
  EXPECT_EQ(Typed(u"a\tb"), Lines{"text 'a'"} + kTab + Lines{"text 'b'"});
}

TEST(TextRunsTest, ACarriageReturnWithALineFeedIsOneReturn) {
  EXPECT_EQ(Typed(u"a\r\nb"), Lines{"text 'a'"} + kReturn + Lines{"text 'b'"});
}

TEST(TextRunsTest, OtherPairsOfLineBreaksAreTwoReturns) {
  for (const char16_t* pair : {u"\n\r", u"\r\r", u"\n\n"}) {
    EXPECT_EQ(Typed(pair), kReturn + kReturn);
  }
  EXPECT_EQ(Typed(u"\r\r\n"), kReturn + kReturn);
  EXPECT_EQ(Typed(u"\r\n\n"), kReturn + kReturn);
}

TEST(TextRunsTest, ACarriageReturnMayBeTheLastUnit) { EXPECT_EQ(Typed(u"\r"), kReturn); }

TEST(TextRunsTest, ALineBreakAtEitherEndHasNoEmptyRunBesideIt) {
  EXPECT_EQ(Typed(u"\na"), kReturn + Lines{"text 'a'"});
  EXPECT_EQ(Typed(u"a\n"), Lines{"text 'a'"} + kReturn);
}

TEST(TextRunsTest, ABreakAfterAFullRunFollowsItAtOnce) {
  EXPECT_EQ(Typed(std::u16string(20, u'x') + u"\t"), Lines{"text 'xxxxxxxxxxxxxxxxxxxx'"} + kTab);
}

TEST(TextRunsTest, ARunMayEndBetweenTheHalvesOfACharacter) {
  EXPECT_EQ(Typed(std::u16string(19, u'x') + u"\U0001F600"),
            (Lines{"text 'xxxxxxxxxxxxxxxxxxx<d83d>'", "text '<de00>'"}));
}

TEST(TextRunsTest, OtherControlCharactersAreText) {
  EXPECT_EQ(Typed(std::u16string_view(u"\b\x1b\0\v\f\x85\u2028", 7)),
            Lines{"text '<8><1b><0><b><c><85><2028>'"});
}

TEST(TextRunsTest, ALoneSurrogateIsText) {
  const char16_t lone[] = {0xdc00, 0xd800, 0};
  EXPECT_EQ(Typed(lone), Lines{"text '<dc00><d800>'"});
}

TEST(TextRunsTest, ThePiecesOfATextAreTheText) {
  const std::u16string text = u"\r\nabc\t\n\rdef\U0001F600" + std::u16string(50, u'y') + u"\r";
  std::u16string rest = text;
  std::u16string pieces;
  while (!rest.empty()) {
    const TextPiece piece = FirstPiece(rest);
    ASSERT_FALSE(piece.units.empty());
    pieces += piece.units;
    rest = rest.substr(piece.units.size());
  }
  EXPECT_EQ(pieces, text);
}

}  // namespace
}  // namespace deskhand
