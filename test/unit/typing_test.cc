// Text as programs get it. Each test has a server of its own.
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "input/text_runs.h"
#include "unit/input_receiver.h"
#include "unit/private_xvfb.h"
#include "unit/sample_texts.h"
#include "unit/text_receiver.h"
#include "unit/typist.h"

namespace deskhand {
namespace {

using std::chrono::milliseconds;

// As many characters that a layout lacks as fit into a usual keyboard at once.
constexpr size_t kFitting = 76;

void UseLayout(const std::string& layout) {
  ASSERT_EQ(std::system(("setxkbmap " + layout).c_str()), 0);
}

/// The n-th thousand of ideographs.
std::u32string Ideographs(size_t count, char32_t first = 0x4e00) {
  return Range(first, first + count - 1);
}

class Typing : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(server_.is_running()); }

  /// What the receiver gets when `text` is typed.
  static std::u32string Type(const std::u32string& text, TextReceiver& receiver) {
    EnterText(ToUtf16(text));
    return receiver.TextLike(text);
  }

  /// The same for a receiver that does nothing at first.
  static std::u32string TypeWhileStopped(const std::u32string& text, TextReceiver& receiver,
                                         milliseconds time = milliseconds(600)) {
    receiver.Stop();
    const auto typing = std::async(std::launch::async, [&] { EnterText(ToUtf16(text)); });
    typing.wait_for(time);
    receiver.Continue();
    typing.wait();
    return receiver.TextLike(text);
  }

  const PrivateXvfb server_;
};

TEST_F(Typing, AThousandCharactersOfAnyKindGivesThemAll) {
  TextReceiver receiver;
  for (const std::u32string& text :
       {AsciiText(), LatinText(), GreekAndCyrillicText(), Ideographs(1000), EmojiText(),
        CombiningText(), RightToLeftText()}) {
    EXPECT_EQ(Type(text, receiver), text);
  }
}

TEST_F(Typing, WorksInEveryLayout) {
  TextReceiver receiver;
  for (const char* const layout : {"us", "de", "fr", "ru", "de -variant neo", "jp", "us,ru"}) {
    UseLayout(layout);
    for (const std::u32string& text : {AsciiText(), LatinText(), GreekAndCyrillicText()}) {
      EXPECT_EQ(Type(text, receiver), text) << layout;
    }
  }
}

TEST_F(Typing, SeesThatAnotherLayoutWasChosen) {
  UseLayout("us,ru,de");
  TextReceiver receiver;
  for (const uint8_t group : {1, 2, 0, 1, 0}) {
    LockGroup(group);
    const std::u32string text = U"Grüße, Привет, Z";
    EXPECT_EQ(Type(text, receiver), text) << int{group};
  }
}

TEST_F(Typing, DoesNotMindCapsLockAndLeavesItOn) {
  InputReceiver locks;
  locks.Lock(XCB_MOD_MASK_LOCK);
  TextReceiver receiver;
  const std::u32string text = U"Aa Éé Яя 你好";
  EXPECT_EQ(Type(text, receiver), text);
  EXPECT_EQ(locks.Locked(), XCB_MOD_MASK_LOCK);
}

TEST_F(Typing, DoesNotMindOtherLocksAndLeavesThemOn) {
  InputReceiver locks;
  constexpr uint8_t kLocks = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_2 | XCB_MOD_MASK_5;
  locks.Lock(kLocks);
  TextReceiver receiver;
  const std::u32string text = U"Aa1! Éé Яя 你好";
  EXPECT_EQ(Type(text, receiver), text);
  EXPECT_EQ(locks.Locked(), kLocks);
}

TEST_F(Typing, KeepsTheOrderOfTextAndKeys) {
  TextReceiver receiver;
  const std::u32string text = U"\tя\n1\n\n你 好\t\U0001f600\n";
  EXPECT_EQ(Type(text, receiver), text);
}

TEST_F(Typing, JoinsPairsAcrossRunsAndReplacesHalves) {
  TextReceiver receiver;
  // The nineteen units before it make the first run end within the pair.
  const std::u32string text = U"1234567890123456789\U0001f600, \U0001f601";
  EXPECT_EQ(Type(text, receiver), text);
  EnterText(
      u"a\xd83d\tb\xde00"
      u"c\xd83d");
  EXPECT_EQ(receiver.TextLike(U"a?\tb?c?"),
            U"a\ufffd\tb\ufffd"
            U"c\ufffd");
}

TEST_F(Typing, OfControlCharactersTypesThoseThatAreKeys) {
  TextReceiver receiver;
  std::u16string text = u"x";
  for (char16_t control = 0; control < ' '; ++control) {
    if (control != '\t' && control != '\n' && control != '\r') text += control;
  }
  text += u"\x7f\x80\x9f\xffff.";
  EnterText(text);
  EXPECT_EQ(receiver.TextLike(U"x...."), U"x\b\x1b\x7f.");
}

TEST_F(Typing, ChangesTheKeyboardOnceForATextThatFits) {
  TextReceiver receiver;
  EXPECT_EQ(Type(U"a", receiver), U"a");
  const int loads = receiver.keymap_loads();
  const std::u32string text = Cycle(Ideographs(kFitting));
  EXPECT_EQ(Type(text, receiver), text);
  EXPECT_EQ(receiver.keymap_loads(), loads + 1);
  EXPECT_EQ(Type(text, receiver), text);
  EXPECT_EQ(receiver.keymap_loads(), loads + 1);
}

TEST_F(Typing, LeavesTheKeysOfTheLayoutAsTheyAre) {
  UseLayout("de,ru");
  const auto before = UsedKeys();
  ASSERT_GT(before.size(), 200);
  TextReceiver receiver;
  for (int round = 0; round < 3; ++round) Type(Ideographs(200, 0x5000 + 1000 * round), receiver);
  const auto after = UsedKeys();
  for (const auto& [keycode, key] : before) EXPECT_EQ(after.at(keycode), key) << int{keycode};
  EXPECT_LE(after.size(), before.size() + kFitting / 4);
}

TEST_F(Typing, WaitsForAReceiverThatIsBehind) {
  TextReceiver receiver;
  const std::u32string text = Ideographs(300);
  EXPECT_EQ(TypeWhileStopped(text, receiver), text);
}

TEST_F(Typing, NeedNotWaitForTextsThatFit) {
  TextReceiver receiver(Pings::kIgnored);
  const std::u32string text = Cycle(Ideographs(70));
  EXPECT_EQ(TypeWhileStopped(text, receiver), text);
}

TEST_F(Typing, GivesReceiversTimeThatAnswerNoPings) {
  TextReceiver receiver(Pings::kIgnored);
  const std::u32string text = Ideographs(200);
  EXPECT_EQ(TypeWhileStopped(text, receiver, milliseconds(100)), text);
}

TEST_F(Typing, BreaksOffRatherThanBeingWrong) {
  TextReceiver receiver;
  const std::u32string text = Ideographs(200);
  const std::u32string fitting = text.substr(0, kFitting);
  EXPECT_EQ(Type(fitting, receiver), fitting);  // these are on keys now
  receiver.Stop();
  EnterText(ToUtf16(text));
  receiver.Continue();
  EnterText(u".");
  EXPECT_EQ(receiver.TextLike(fitting + U"."), fitting + U".");
}

TEST_F(Typing, DoesNotWaitForAReceiverThatIsGone) {
  auto gone = std::make_unique<TextReceiver>();
  EXPECT_EQ(Type(Ideographs(70), *gone), Ideographs(70));  // these are on keys now
  gone->Stop();
  EnterText(ToUtf16(Ideographs(70)));
  TextReceiver receiver;  // before, or its window could get the other's number
  gone.reset();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Type(Ideographs(70, 0x6000), receiver), Ideographs(70, 0x6000));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(Typing, WaitsForTheReceiverOfTheTextBefore) {
  TextReceiver first;
  EXPECT_EQ(Type(Ideographs(70), first), Ideographs(70));  // these are on keys now
  first.Stop();
  EnterText(ToUtf16(Ideographs(70)));
  TextReceiver second;
  const auto typing = std::async(std::launch::async, [] {  //
    EnterText(ToUtf16(Ideographs(70, 0x6000)));
  });
  EXPECT_EQ(typing.wait_for(milliseconds(300)), std::future_status::timeout);
  first.Continue();
  EXPECT_EQ(first.TextLike(Ideographs(70)), Ideographs(70));
  EXPECT_EQ(second.TextLike(Ideographs(70)), Ideographs(70, 0x6000));
}

TEST_F(Typing, GoesOnAfterAnotherKeymapWasLoaded) {
  TextReceiver receiver;
  EXPECT_EQ(Type(U"你好", receiver), U"你好");
  UseLayout("fr");
  EXPECT_EQ(Type(U"好 ok 你們", receiver), U"好 ok 你們");
}

TEST_F(Typing, IsNotMisledByTheLayoutOfTheUsersKeyboard) {
  InputReceiver user;
  UseLayout("de -device " + std::to_string(user.real_keyboard()));
  const uint8_t y = user.KeycodeOf(XKB_KEY_y);
  TextReceiver receiver;
  for (const std::u32string& text : {std::u32string(U"xyz {}"), Ideographs(70), LatinText()}) {
    user.PressPhysically(y, true);
    user.PressPhysically(y, false);
    EXPECT_EQ(receiver.TextLike(U"z"), U"z");
    EXPECT_EQ(Type(text, receiver), text);
  }
}

TEST_F(Typing, LeavesTheLayoutOfEveryKeyboardAsItIs) {
  InputReceiver user;
  const uint8_t keyboard = user.real_keyboard();
  UseLayout("jp -device " + std::to_string(keyboard));
  const auto before = UsedKeys(keyboard);
  TextReceiver receiver;
  EXPECT_EQ(Type(Ideographs(100), receiver), Ideographs(100));
  const auto after = UsedKeys(keyboard);
  for (const auto& [keycode, key] : before) EXPECT_EQ(after.at(keycode), key) << int{keycode};
}

TEST_F(Typing, OfSeveralProcessesTakesTurns) {
  TextReceiver receiver;
  constexpr int kRounds = 3;
  const std::u32string texts[] = {Ideographs(200), U"Straße " + Ideographs(100, 0x6000) + U"!"};
  Typist typists[2];
  std::vector<std::future<void>> processes;
  for (int i = 0; i < 2; ++i) {
    processes.push_back(std::async(std::launch::async, [&, i] {
      for (int round = 0; round < kRounds; ++round) typists[i].Type(ToUtf16(texts[i]));
    }));
  }
  for (auto& process : processes) process.wait();
  std::u32string got = receiver.TextLike(Cycle(U".", kRounds * (texts[0] + texts[1]).size()));
  int counts[] = {0, 0};
  while (!got.empty()) {
    const int which = got.starts_with(texts[0]) ? 0 : 1;
    ASSERT_TRUE(got.starts_with(texts[which]));
    got = got.substr(texts[which].size());
    ++counts[which];
  }
  EXPECT_EQ(counts[0], kRounds);
  EXPECT_EQ(counts[1], kRounds);
}

TEST_F(Typing, UsesTheKeysThatAnEarlierProcessUsed) {
  TextReceiver receiver;
  for (int process = 0; process < 5; ++process) {
    Typist typist;
    const std::u32string text = Ideographs(70, 0x5000 + 100 * process);
    typist.Type(ToUtf16(text));
    EXPECT_EQ(receiver.TextLike(text), text);
  }
}

TEST_F(Typing, WaitsForTheReceiverOfAnEarlierProcess) {
  TextReceiver first;
  Typist().Type(ToUtf16(Ideographs(70)));
  EXPECT_EQ(first.TextLike(Ideographs(70)), Ideographs(70));  // these are on keys now
  first.Stop();
  std::make_unique<Typist>()->Type(ToUtf16(Ideographs(70)));
  TextReceiver second;
  const auto typing = std::async(std::launch::async, [] {  //
    Typist().Type(ToUtf16(Ideographs(70, 0x6000)));
  });
  EXPECT_EQ(typing.wait_for(milliseconds(300)), std::future_status::timeout);
  first.Continue();
  EXPECT_EQ(first.TextLike(Ideographs(70)), Ideographs(70));
  EXPECT_EQ(second.TextLike(Ideographs(70)), Ideographs(70, 0x6000));
}

TEST_F(Typing, LetsNoKeyRepeatMeanwhile) {
  Typist typist;
  typist.Begin(u"abc");
  EXPECT_FALSE(KeysRepeat());
  typist.Type(u"abc");
  EXPECT_TRUE(KeysRepeat());
}

TEST_F(Typing, LetsKeysRepeatAgainAfterAProcessThatDiedInATextBefore) {
  auto dying = std::make_unique<Typist>();
  dying->Begin(u"abc");
  dying.reset();
  Typist typist;
  typist.Type(u"def");
  EXPECT_TRUE(KeysRepeat());
}

TEST_F(Typing, LeavesItToTheUserWhetherKeysRepeat) {
  Typist typist;
  SetKeysRepeat(false);
  typist.Type(u"abc");
  EXPECT_FALSE(KeysRepeat());
  SetKeysRepeat(true);
  typist.Type(u"abc");
  EXPECT_TRUE(KeysRepeat());
  SetKeysRepeat(false);
  typist.Type(u"abc");
  EXPECT_FALSE(KeysRepeat());
}

TEST_F(Typing, GoesOnWhenAProcessDiesWhoseTurnItIs) {
  TextReceiver receiver;
  auto dying = std::make_unique<Typist>();
  dying->Begin(u"abc");
  Typist typist;
  const auto typing = std::async(std::launch::async, [&] { typist.Type(u"def"); });
  EXPECT_EQ(typing.wait_for(milliseconds(100)), std::future_status::timeout);
  dying.reset();
  EXPECT_EQ(receiver.TextLike(U"def"), U"def");
}

}  // namespace
}  // namespace deskhand
