#include "input/chord.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace deskhand {
namespace {

struct Row {
  const char* chord;
  uint64_t flags;
  uint16_t key_code;
  bool has_key;
};

void PrintTo(const Row& row, std::ostream* out) { *out << "'" << row.chord << "'"; }

class ChordTest : public testing::TestWithParam<Row> {};

TEST_P(ChordTest, IsReadAs) {
  const Row& row = GetParam();
  const ParsedChord parsed = ParseChord(row.chord);
  EXPECT_EQ(parsed.flags, row.flags);
  EXPECT_EQ(parsed.key_code, row.key_code);
  EXPECT_EQ(parsed.has_key, row.has_key);
}

constexpr uint64_t kNone = 0;
constexpr uint64_t kShift = 0x20000;
constexpr uint64_t kControl = 0x40000;
constexpr uint64_t kCommand = 0x100000;

INSTANTIATE_TEST_SUITE_P(
    Keys, ChordTest,
    testing::Values(Row{"cmd+c", kCommand, 8, true},
                    Row{"Cmd + Shift + T", kCommand | kShift, 17, true}, Row{"A", kNone, 0, true},
                    Row{"a+b", kNone, 11, true}, Row{"shift+a+ctrl", kShift | kControl, 0, true},
                    Row{"rshift+a", kShift, 0, true}, Row{"shift+a", kShift, 0, true},
                    Row{"page up", kNone, 116, true}, Row{"f 1", kNone, 122, true},
                    Row{" \\ ", kNone, 42, true}));

INSTANTIATE_TEST_SUITE_P(ModifiersAlone, ChordTest,
                         testing::Values(Row{"shift", kShift, 56, true},
                                         Row{"rshift", kShift, 60, true},
                                         Row{"ctrl+shift", kControl | kShift, 56, true},
                                         Row{"shift+ctrl", kControl | kShift, 59, true},
                                         Row{"rcommand", kCommand, 54, true},
                                         Row{"cmd++", kCommand, 55, true}));

INSTANTIATE_TEST_SUITE_P(UnknownWords, ChordTest,
                         testing::Values(Row{"cmd+foo+a", kCommand, 0, true},
                                         Row{"a+foo", kNone, 0, true},
                                         Row{"foo+cmd", kCommand, 55, true},
                                         Row{"cmd+foo", kCommand, 0, false},
                                         Row{"!", kNone, 0, false}, Row{"é", kNone, 0, false},
                                         Row{"a\t", kNone, 0, false}, Row{"a\n", kNone, 0, false},
                                         Row{"cmd\xc2\xa0", kNone, 0, false}));

INSTANTIATE_TEST_SUITE_P(Nothing, ChordTest,
                         testing::Values(Row{"", kNone, 0, false}, Row{"+", kNone, 0, false},
                                         Row{"   ", kNone, 0, false},
                                         Row{" + + ", kNone, 0, false}));

TEST(ChordTextTest, ANulByteIsPartOfItsWord) {
  EXPECT_FALSE(ParseChord(std::string_view("a\0", 2)).has_key);
}

TEST(ChordTextTest, AVeryLongChordIsRead) {
  const std::string words =
      std::string(1'000'000, '+') + "cmd+" + std::string(1'000'000, 'x') + "+c";
  EXPECT_EQ(ParseChord(words).key_code, 8);
  EXPECT_EQ(ParseChord(words).flags, kCommand);
}

}  // namespace
}  // namespace deskhand
