// Which keys are pressed for which names. Each test has a server of its own.
#include "platform/x11/keyboard.h"

#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/x11/input_state.h"
#include "platform/x11/key_codes.h"
#include "unit/private_xvfb.h"
#include "unit/text_receiver.h"
#include "unit/typist.h"

namespace deskhand {
namespace {

using platform::InputState;
using platform::Session;

// Virtual key codes.
constexpr uint16_t kA = 0, kQ = 12, kY = 16, kZ = 6, kOne = 18, kMinus = 27, kSlash = 44, kFn = 63;
constexpr uint16_t kReturn = 36, kF1 = 122, kF13 = 105, kF19 = 80, kNumpad0 = 82, kClear = 71;
constexpr uint16_t kCapsLock = 57, kLeftCommand = 55, kRightOption = 61;

class Keys : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(server_.is_running()); }

  static void UseLayout(const std::string& layout) {
    ASSERT_EQ(std::system(("setxkbmap " + layout).c_str()), 0);
  }

  std::optional<uint8_t> KeyFor(uint16_t code) {
    const Session session(channel_, platform::Clock::now() + std::chrono::seconds(5));
    return InputState::Of(session)->keyboard->KeycodeFor(code);
  }

  const PrivateXvfb server_;
  platform::Channel channel_;
};

TEST_F(Keys, OfTheUsLayoutAreWhereTheirNamesSay) {
  for (uint16_t code = 0; code < 128; ++code) {
    const platform::KeyPlace* const place = platform::FindKeyPlace(code);
    const bool has_key = place && place->keycode != 0;
    EXPECT_EQ(KeyFor(code), has_key ? std::optional(place->keycode) : std::nullopt) << code;
  }
}

TEST_F(Keys, AreThoseThatGiveTheLetterInTheLayout) {
  UseLayout("fr");
  EXPECT_EQ(KeyFor(kA), 24);
  EXPECT_EQ(KeyFor(kQ), 38);
  UseLayout("de");
  EXPECT_EQ(KeyFor(kZ), 29);
  EXPECT_EQ(KeyFor(kY), 52);
  EXPECT_EQ(KeyFor(kMinus), 61);
}

TEST_F(Keys, AreThoseInTheirPlaceWhenTheLayoutHasNoSuchLetter) {
  UseLayout("ru");
  EXPECT_EQ(KeyFor(kA), 38);
  EXPECT_EQ(KeyFor(kZ), 52);
  UseLayout("fr");
  EXPECT_EQ(KeyFor(kOne), 10);
  UseLayout("de");
  EXPECT_EQ(KeyFor(kSlash), 61);
  EXPECT_EQ(KeyFor(kRightOption), 108);
}

TEST_F(Keys, FollowTheLayoutThatIsChosen) {
  UseLayout("us,fr");
  EXPECT_EQ(KeyFor(kA), 38);
  LockGroup(1);
  EXPECT_EQ(KeyFor(kA), 24);
  LockGroup(0);
  EXPECT_EQ(KeyFor(kA), 38);
}

TEST_F(Keys, FollowOptionsOfTheLayout) {
  UseLayout("us -option ctrl:swapcaps");
  EXPECT_EQ(KeyFor(kCapsLock), 37);
  UseLayout("us -option -option altwin:swap_lalt_lwin");
  EXPECT_EQ(KeyFor(kLeftCommand), 64);
}

TEST_F(Keys, WithoutCharactersHaveTheirPlaces) {
  EXPECT_EQ(KeyFor(kReturn), 36);
  EXPECT_EQ(KeyFor(kF1), 67);
  EXPECT_EQ(KeyFor(kF13), 191);
  EXPECT_EQ(KeyFor(kNumpad0), 90);
}

TEST_F(Keys, ThatNoKeyboardHasAreNone) {
  EXPECT_EQ(KeyFor(kFn), std::nullopt);
  EXPECT_EQ(KeyFor(kClear), std::nullopt);
  EXPECT_EQ(KeyFor(1000), std::nullopt);
}

TEST_F(Keys, AreNeverThoseThatAreLentToCharacters) {
  UseLayout("ru");
  TextReceiver receiver;
  Typist typist;
  typist.Type(u"az");
  EXPECT_EQ(receiver.TextLike(U"az"), U"az");
  EXPECT_EQ(KeyFor(kA), 38);
  EXPECT_EQ(KeyFor(kZ), 52);
  EXPECT_EQ(KeyFor(kF19), 197);
  // All of them, also the one with a name.
  std::u16string text;
  for (char16_t character = 0x4e00; character < 0x4e00 + 76; ++character) text += character;
  typist.Type(text);
  EXPECT_EQ(KeyFor(kF19), std::nullopt);
}

}  // namespace
}  // namespace deskhand
