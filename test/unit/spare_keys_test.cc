#include "platform/x11/spare_keys.h"

#include <gtest/gtest.h>

#include "platform/x11/lent_keys.h"
#include "platform/x11/pending_uses.h"
#include "platform/x11/receiver.h"
#include "platform/x11/surrogates.h"

namespace deskhand::platform {
namespace {

using Symbols = std::vector<xkb_keysym_t>;
using std::chrono::milliseconds;

/// Two keys of four levels; what is on them: nothing.
SpareKeys TwoKeys() {
  SpareKeys keys;
  keys.Update({{93, {}}, {97, {}}}, 4);
  return keys;
}

TEST(SpareKeys, HaveAPlaceForEachLevel) {
  SpareKeys keys = TwoKeys();
  EXPECT_EQ(keys.capacity(), 8);
  EXPECT_EQ(keys.LastUseInTheWay({1, 2, 3, 4, 5, 6, 7, 8}), 0);
  EXPECT_EQ(keys.LastUseInTheWay({1, 2, 3, 4, 5, 6, 7, 8, 9}), std::nullopt);
  const auto changed = keys.Lend({1, 2, 3, 4, 5});
  EXPECT_EQ(changed, (std::map<uint8_t, KeySymbols>{{93, {1, 2, 3, 4}}, {97, {5}}}));
  EXPECT_EQ(keys.Find(3)->keycode, 93);
  EXPECT_EQ(keys.Find(3)->level, 2);
  EXPECT_FALSE(keys.Find(9));
}

TEST(SpareKeys, ThatHaveTheSymbolsAlreadyAreLeftAlone) {
  SpareKeys keys = TwoKeys();
  keys.Lend({1, 2, 3, 4, 5});
  EXPECT_TRUE(keys.Lend({2, 5}).empty());
  EXPECT_EQ(keys.Lend({2, 6}), (std::map<uint8_t, KeySymbols>{{97, {5, 6}}}));
}

TEST(SpareKeys, AreGivenAwayInTheOrderOfTheirLastUse) {
  SpareKeys keys = TwoKeys();
  keys.Lend({1, 2, 3, 4, 5, 6, 7, 8});
  Use use = 10;
  for (const xkb_keysym_t symbol : {4, 3, 2, 1, 8, 7, 6, 5}) {
    keys.SetUsed(*keys.Find(symbol), ++use);
  }
  EXPECT_EQ(keys.LastUseInTheWay({1, 9}), 11);
  // Of those used longest ago one is wanted itself.
  EXPECT_EQ(keys.LastUseInTheWay({4, 9, 10}), 13);
  keys.Lend({4, 9, 10});
  EXPECT_TRUE(keys.Find(4) && keys.Find(9) && keys.Find(10));
  EXPECT_FALSE(keys.Find(3) || keys.Find(2));
}

TEST(SpareKeys, RememberTheirUseWhenTheirSymbolIsGone) {
  SpareKeys keys = TwoKeys();
  keys.Lend({1});
  keys.SetUsed(*keys.Find(1), 7);
  keys.Update({{93, {}}, {97, {}}}, 4);
  EXPECT_FALSE(keys.Find(1));
  EXPECT_EQ(keys.LastUseInTheWay({1, 2, 3, 4, 5, 6, 7}), 0);
  EXPECT_EQ(keys.LastUseInTheWay({1, 2, 3, 4, 5, 6, 7, 8}), 7);
}

TEST(SpareKeys, ThatAnotherProcessFilledMayAllHaveBeenUsed) {
  SpareKeys keys;
  keys.Update({{93, {1, 2, 0, 0}}}, 4);
  keys.SetAllUsed(5);
  EXPECT_EQ(keys.LastUseInTheWay({1, 3, 4}), 0);
  EXPECT_EQ(keys.LastUseInTheWay({1, 3, 4, 5}), 5);
}

TEST(SpareKeys, CanHaveTwoLevels) {
  SpareKeys keys;
  keys.Update({{93, {}}}, 2);
  EXPECT_EQ(keys.capacity(), 2);
  EXPECT_EQ(keys.Lend({1, 2}), (std::map<uint8_t, KeySymbols>{{93, {1, 2, 0, 0}}}));
}

const Deadline kNow;

TEST(PendingUses, AreOverWhenAPingSentAfterThemIsAnswered) {
  PendingUses uses;
  EXPECT_EQ(uses.over(), kEveryUse);
  uses.Add(100, true, 3, kNow);
  uses.OnPing(100, 77);
  uses.Add(100, true, 4, kNow);
  EXPECT_EQ(uses.over(), 2);
  uses.OnPong(100, 77);
  EXPECT_EQ(uses.over(), 3);
  EXPECT_EQ(uses.Unpinged(), std::vector<xcb_window_t>{100});
  uses.OnPing(100, 78);
  EXPECT_TRUE(uses.Unpinged().empty());
  uses.OnPong(100, 78);
  EXPECT_EQ(uses.over(), kEveryUse);
}

TEST(PendingUses, AreNotOverByAnswersToOthersPings) {
  PendingUses uses;
  uses.Add(100, true, 3, kNow);
  uses.Add(200, true, 4, kNow);
  uses.OnPing(100, 77);
  uses.OnPong(100, 78);
  uses.OnPong(200, 77);
  EXPECT_EQ(uses.over(), 2);
  uses.ForgetPings();
  uses.OnPong(100, 77);
  EXPECT_EQ(uses.over(), 2);
}

TEST(PendingUses, AreOverWhenEveryReceiverIsDone) {
  PendingUses uses;
  uses.Add(100, true, 3, kNow);
  uses.Add(200, true, 5, kNow);
  uses.OnPing(200, 1);
  uses.OnPong(200, 1);
  EXPECT_EQ(uses.over(), 2);
  uses.Remove(100);
  EXPECT_EQ(uses.over(), kEveryUse);
}

TEST(PendingUses, OfAReceiverThatAnswersNothingAreOverAfterAWhile) {
  PendingUses uses;
  uses.Add(100, false, 3, kNow);
  uses.Add(100, false, 4, kNow + milliseconds(100));
  EXPECT_TRUE(uses.Unpinged().empty());
  EXPECT_EQ(uses.NextExpiry(), kNow + milliseconds(100) + PendingUses::kQuarantine);
  const auto rests = [](xcb_window_t window) { return window == 100; };
  uses.Expire(kNow + PendingUses::kQuarantine, rests);
  EXPECT_EQ(uses.over(), 2);
  uses.Expire(kNow + milliseconds(100) + PendingUses::kQuarantine, rests);
  EXPECT_EQ(uses.over(), kEveryUse);
}

TEST(PendingUses, OfAReceiverThatDoesNotRestAreNeverOver) {
  PendingUses uses;
  uses.Add(100, false, 3, kNow);
  uses.Expire(kNow + std::chrono::hours(1), [](xcb_window_t) { return false; });
  EXPECT_EQ(uses.over(), 2);
}

TEST(Receivers, WaitInTheStatesThatHaveNothingToDo) {
  EXPECT_EQ(IsWaiting("17 (cat) S 1 17"), true);
  EXPECT_EQ(IsWaiting("17 (a) R b) S 1 17"), true);
  for (const char* const busy : {"17 (cat) R 1", "17 (cat) T 1", "17 (cat) t 1", "17 (cat) D 1"}) {
    EXPECT_EQ(IsWaiting(busy), false) << busy;
  }
  for (const char* const other : {"", "17 (cat", "17 (cat) "}) {
    EXPECT_EQ(IsWaiting(other), std::nullopt) << other;
  }
}

TEST(LentKeys, AreReadAsTheyWereWritten) {
  const LentKeys lent{5, {100, 200}, {{93, {1, 2, 3, 4}}, {255, {0x1004e00, 0, 0, 0}}}};
  const auto words = Encode(lent);
  EXPECT_EQ(Decode(words.data(), words.size()), lent);
}

TEST(LentKeys, AreNoneInWhatOthersWrote) {
  const auto words = Encode({5, {100, 200}, {{93, {1, 2, 3, 4}}}});
  for (size_t size = 0; size < words.size(); ++size) {
    const auto lent = Decode(words.data(), size);
    // Cut right before the keys it is whole.
    EXPECT_EQ(lent.has_value(), size == 5) << size;
  }
  auto spoiled = words;
  spoiled[2] = 0xffffffff;
  EXPECT_FALSE(Decode(spoiled.data(), spoiled.size()));
  spoiled = words;
  spoiled[5] = 256;
  EXPECT_FALSE(Decode(spoiled.data(), spoiled.size()));
  spoiled = words;
  spoiled[0] = 2;
  EXPECT_FALSE(Decode(spoiled.data(), spoiled.size()));
}

TEST(RunReader, JoinsAPairThatIsCutBetweenRuns) {
  RunReader reader;
  EXPECT_EQ(reader.Read(u"ab\xd83d", u'\xde00'), U"ab");
  EXPECT_EQ(reader.Read(u"\xde00 c", u' '), U"\U0001f600 c");
  EXPECT_EQ(reader.Read(u"d\xd83d", std::nullopt), U"d");
  EXPECT_EQ(reader.Read(u"\xde00", std::nullopt), U"\U0001f600");
}

TEST(RunReader, ReplacesHalvesOfPairs) {
  RunReader reader;
  EXPECT_EQ(reader.Read(u"a\xde00"
                        u"b\xd83d"
                        u"c\xd83d",
                        u'\t'),
            U"a\ufffd"
            U"b\ufffd"
            U"c\ufffd");
  EXPECT_EQ(reader.Read(u"\xd83d", std::nullopt), U"");
  EXPECT_EQ(reader.Read(u"x", std::nullopt), U"\ufffdx");
  EXPECT_EQ(reader.Read(u"\xd83d", std::nullopt), U"");
  EXPECT_EQ(reader.End(), U"\ufffd");
  EXPECT_EQ(reader.End(), U"");
}

}  // namespace
}  // namespace deskhand::platform
