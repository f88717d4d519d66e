#include "host/qelcore/components/PlainText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include "tests/host/qelcore/components/RowName.h"

namespace qelcore::host::components {
namespace {

using namespace std::string_view_literals;
using ::testing::ElementsAre;

TEST(PlainTextTest, TrimsBothSides) {
  EXPECT_EQ(Trim(" \t a b \r\n"), "a b");
  EXPECT_EQ(Trim("a"), "a");
  EXPECT_EQ(Trim(" \n"), "");
  EXPECT_EQ(Trim(""), "");
}

struct CleanTextRow {
  std::string_view mBytes;
  std::string_view mText;
  friend void PrintTo(const CleanTextRow& row, std::ostream* stream) {
    *stream << testsupport::RowName(row.mBytes);
  }
};

class CleanTextTest : public ::testing::TestWithParam<CleanTextRow> {};

TEST_P(CleanTextTest, GivesValidUtf8OnOneLine) {
  EXPECT_EQ(CleanText(GetParam().mBytes), GetParam().mText) << GetParam().mBytes;
}

INSTANTIATE_TEST_SUITE_P(
    Table, CleanTextTest,
    ::testing::Values(CleanTextRow{"", ""}, CleanTextRow{"GeForce GTX 660  \n", "GeForce GTX 660"},
                      CleanTextRow{"two\nlines\tand a tab", "two lines and a tab"},
                      CleanTextRow{"brcm,a\0brcm,b\0"sv, "brcm,a"}, CleanTextRow{"\0junk"sv, ""},
                      CleanTextRow{"\x1b[31mred\x07", "[31mred"}, CleanTextRow{"a\xffz", "a\xef\xbf\xbdz"},
                      CleanTextRow{"\xc3\xa9t\xc3\xa9", "\xc3\xa9t\xc3\xa9"},
                      CleanTextRow{"next\xc2\x85line", "next line"}, CleanTextRow{"\x01\x02\x03", ""}));

TEST(CleanTextTest, BoundsTheLengthAndKeepsCharactersWhole) {
  EXPECT_EQ(CleanText(std::string(100'000, 'x')).size(), 256u);
  std::string faces = "x";
  for (int count = 0; count < 300; ++count) faces += "\xf0\x9f\x98\x80";
  // One letter and 127 whole characters of two UTF-16 units each; half a character more would fit.
  EXPECT_EQ(CleanText(faces).size(), 1u + 127u * 4u);
  EXPECT_EQ(CleanText(faces).find("\xef\xbf\xbd"), std::string::npos);
}

TEST(PlainTextTest, ParsesHexadecimal) {
  EXPECT_EQ(ParseHexadecimal("0x8086"), 0x8086u);
  EXPECT_EQ(ParseHexadecimal("10DE"), 0x10deu);
  EXPECT_EQ(ParseHexadecimal("ffffffff"), 0xffffffffu);
  for (const char* text : {"", "0x", "0x1g", "100000000", " 1", "1 ", "-1", "+1"}) {
    EXPECT_EQ(ParseHexadecimal(text), std::nullopt) << text;
  }
}

TEST(PlainTextTest, ParsesDecimal) {
  EXPECT_EQ(ParseDecimal("007"), 7u);
  EXPECT_EQ(ParseDecimal("18446744073709551615"), 18446744073709551615u);
  for (const char* text : {"", "18446744073709551616", "-1", "1.0", "1k"}) {
    EXPECT_EQ(ParseDecimal(text), std::nullopt) << text;
  }
}

TEST(PlainTextTest, WritesAtLeastFourHexadecimalDigits) {
  EXPECT_EQ(FourHexadecimalDigits(0), "0000");
  EXPECT_EQ(FourHexadecimalDigits(0xAB1), "0ab1");
  EXPECT_EQ(FourHexadecimalDigits(0xFFFFFFFF), "ffffffff");
}

TEST(PlainTextTest, OrdersNumbersByValue) {
  std::vector<std::string> names{"card10",
                                 "card2",
                                 "card",
                                 "1-10",
                                 "1-2.10",
                                 "1-2",
                                 "1-2.9",
                                 "a01",
                                 "a1",
                                 "a001",
                                 "99999999999999999999999",
                                 "100000000000000000000000"};
  std::sort(names.begin(), names.end(), NaturalLess);
  EXPECT_THAT(names, ElementsAre("1-2", "1-2.9", "1-2.10", "1-10", "99999999999999999999999",
                                 "100000000000000000000000", "a001", "a01", "a1", "card", "card2", "card10"));
}

TEST(PlainTextTest, NaturalOrderIsStrict) {
  const std::vector<std::string> names{"",    "0",    "00", "a", "a0",  "a00",
                                       "a0b", "a00b", "a1", "-", "1-1", "1-01"};
  for (const std::string& left : names) {
    EXPECT_FALSE(NaturalLess(left, left)) << left;
    for (const std::string& right : names) {
      EXPECT_TRUE(left == right || NaturalLess(left, right) != NaturalLess(right, left))
          << left << " " << right;
    }
  }
}

TEST(PlainTextTest, VisitsLinesUntilToldToStop) {
  std::vector<std::string> lines;
  ForEachLine("one\n\ntwo\nthree", [&](std::string_view line) {
    lines.emplace_back(line);
    return true;
  });
  EXPECT_THAT(lines, ElementsAre("one", "", "two", "three"));
  lines.clear();
  ForEachLine("one\ntwo\n", [&](std::string_view line) {
    lines.emplace_back(line);
    return false;
  });
  EXPECT_THAT(lines, ElementsAre("one"));
}

}  // namespace
}  // namespace qelcore::host::components
