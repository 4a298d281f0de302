// Text as programs get it. Each test has a server of its own.
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "input/text_runs.h"
#include "platform/input.h"
#include "unit/private_xvfb.h"
#include "unit/sample_texts.h"
#include "unit/text_receiver.h"

namespace deskhand {
namespace {

void UseLayout(const std::string& layout) {
  ASSERT_EQ(std::system(("setxkbmap " + layout).c_str()), 0);
}

class Typing : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(server_.is_running()); }

  /// What the receiver gets when `text` is typed.
  static std::u32string Type(const std::u32string& text, TextReceiver& receiver) {
    EnterText(ToUtf16(text));
    return receiver.TextLike(text);
  }

  const PrivateXvfb server_;
};

TEST_F(Typing, AThousandCharactersOfAnyKindArriveAsTheyAre) {
  TextReceiver receiver;
  for (const std::u32string& text :
       {AsciiText(), LatinText(), GreekAndCyrillicText(), DistinctIdeographs(), EmojiText(),
        CombiningText(), RightToLeftText()}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Type(text, receiver), text);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    printf("%.0f ch/s\n", text.size() / took.count());
  }
}

TEST_F(Typing, WorksInEveryLayout) {
  TextReceiver receiver;
  for (const char* const layout : {"us", "de", "fr", "ru", "us,ru"}) {
    UseLayout(layout);
    for (const std::u32string& text : {AsciiText(), LatinText(), GreekAndCyrillicText()}) {
      EXPECT_EQ(Type(text, receiver), text) << layout;
    }
  }
}

}  // namespace
}  // namespace deskhand
