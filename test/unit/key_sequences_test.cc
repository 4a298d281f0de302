#include "input/key_sequences.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakePlatform;
using Lines = std::vector<std::string>;

class KeySequencesTest : public testing::Test {
 protected:
  void SetUp() override { FakePlatform::Reset(); }
  static const Lines& input() { return FakePlatform::Get().input; }
};

TEST_F(KeySequencesTest, ATapWithModifiersHasTheirFlagsOnBothEventsAndAnnouncesThem) {
  TapChord(ParseChord("cmd+c"), 1);
  EXPECT_EQ(input(), (Lines{"begin, flags 0x100000", "key 8 down, flags 0x100000",
                            "key 8 up, flags 0x100000", "end"}));
}

TEST_F(KeySequencesTest, ATapWithoutModifiersLeavesTheFlagsAlone) {
  TapChord(ParseChord("a"), 1);
  EXPECT_EQ(input(), (Lines{"begin", "key 0 down", "key 0 up", "end"}));
}

TEST_F(KeySequencesTest, TapsAreTwentyMillisecondsApart) {
  TapChord(ParseChord("a"), 3);
  EXPECT_EQ(input(), (Lines{"begin", "key 0 down", "key 0 up", "pause 20000", "key 0 down",
                            "key 0 up", "pause 20000", "key 0 down", "key 0 up", "end"}));
}

TEST_F(KeySequencesTest, FewerThanTwoTapsAreOne) {
  for (const int32_t taps : {1, 0, -5, INT32_MIN}) {
    FakePlatform::Reset();
    TapChord(ParseChord("a"), taps);
    EXPECT_EQ(input().size(), 4u) << taps;
  }
}

TEST_F(KeySequencesTest, AHoldPausesBetweenDownAndUp) {
  HoldChord(ParseChord("shift+space"), 500);
  EXPECT_EQ(input(), (Lines{"begin, flags 0x20000", "key 49 down, flags 0x20000", "pause 500000",
                            "key 49 up, flags 0x20000", "end"}));
}

TEST_F(KeySequencesTest, AHoldOfNoTimeDoesNotPause) {
  for (const int32_t duration : {0, -10, INT32_MIN}) {
    FakePlatform::Reset();
    HoldChord(ParseChord("space"), duration);
    EXPECT_EQ(input(), (Lines{"begin", "key 49 down", "key 49 up", "end"})) << duration;
  }
}

TEST_F(KeySequencesTest, AHoldIsCountedIn32BitsOfMicroseconds) {
  HoldChord(ParseChord("space"), 4'294'967);
  HoldChord(ParseChord("space"), 4'294'968);
  HoldChord(ParseChord("space"), INT32_MAX);
  EXPECT_EQ(input()[2], "pause 4294967000");
  EXPECT_EQ(input()[7], "pause 704");
  EXPECT_EQ(input()[12], "pause 4294966296");
}

}  // namespace
}  // namespace deskhand
