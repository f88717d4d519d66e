#include "platform/qelcore/Text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <string>

namespace {

using qelcore::UTF8StringStream;
using qelcore::string::UTF16to8;
using qelcore::string::UTF8to16;

struct Pair {
  std::string mUTF8;
  std::u16string mUTF16;
};

TEST(Text, WellFormedTextConvertsBothWays) {
  const Pair rows[] = {
      {"", u""},
      {"plain", u"plain"},
      {std::string("nul\0inside", 10), std::u16string(u"nul\0inside", 10)},
      {"\xC3\xA9", u"\u00E9"},
      {"\xE2\x82\xAC", u"\u20AC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600"},
      {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
      {"\xEF\xBB\xBF"
       "after a mark",
       u"\uFEFFafter a mark"},
      {"\xEE\x80\x80 \xEF\xBF\xBF", u"\uE000 \uFFFF"},
  };
  for (const Pair& row : rows) {
    EXPECT_EQ(UTF8to16(row.mUTF8), row.mUTF16) << row.mUTF8;
    EXPECT_EQ(UTF16to8(row.mUTF16), row.mUTF8) << row.mUTF8;
  }
}

TEST(Text, MalformedUTF8BecomesReplacementCharacters) {
  const Pair rows[] = {
      {"a\xFFz", u"a\uFFFDz"},
      {"a\x80z", u"a\uFFFDz"},
      {"\xC3", u"\uFFFD"},
      {"\xE2\x82", u"\uFFFD"},
      {"\xE2\x82z", u"\uFFFDz"},
      {"\xF0\x9F\x98", u"\uFFFD"},
      {"\xC0\xAF"
       "z",
       u"\uFFFDz"},                       // an overlong slash
      {"\xED\xA0\x80z", u"\uFFFDz"},      // half of a surrogate pair
      {"\xF5\x80\x80\x80z", u"\uFFFDz"},  // above the last character
      {"ok\xC3\xA9\xFFok", u"ok\u00E9\uFFFDok"},
  };
  for (const Pair& row : rows) {
    const std::u16string converted = UTF8to16(row.mUTF8);
    EXPECT_EQ(converted.front() == u'\uFFFD', row.mUTF16.front() == u'\uFFFD') << row.mUTF8;
    EXPECT_NE(converted.find(u'\uFFFD'), std::u16string::npos) << row.mUTF8;
    EXPECT_EQ(converted.back(), row.mUTF16.back()) << row.mUTF8;
    // What comes out is always well-formed.
    EXPECT_EQ(UTF8to16(UTF16to8(converted)), converted) << row.mUTF8;
  }
  EXPECT_EQ(UTF8to16("a\xFFz"), u"a\uFFFDz");
  EXPECT_EQ(UTF8to16("\xE2\x82z"), u"\uFFFDz");
  EXPECT_EQ(UTF8to16("\xED\xA0\x80z"), u"\uFFFDz");
}

TEST(Text, EveryUnpairedSurrogateBecomesOneReplacementCharacter) {
  const char16_t high = 0xD83D;
  const char16_t low = 0xDE00;
  const std::u16string rows[] = {
      std::u16string(1, high),         std::u16string(1, low),     std::u16string{low, high},
      std::u16string{high, high, low}, std::u16string{high, u'z'}, std::u16string{high, low, low},
  };
  const std::string expected[] = {
      "\xEF\xBF\xBD",
      "\xEF\xBF\xBD",
      "\xEF\xBF\xBD\xEF\xBF\xBD",
      "\xEF\xBF\xBD\xF0\x9F\x98\x80",
      "\xEF\xBF\xBDz",
      "\xF0\x9F\x98\x80\xEF\xBF\xBD",
  };
  for (std::size_t row = 0; row < std::size(rows); ++row) {
    EXPECT_EQ(UTF16to8(rows[row]), expected[row]) << row;
  }
}

TEST(Text, EverySingleCharacterConvertsBothWays) {
  for (char32_t character = 0; character <= 0x10FFFF; character += (character < 0x3000 ? 1 : 61)) {
    if (character >= 0xD800 && character <= 0xDFFF) {
      continue;
    }
    std::u16string text;
    if (character < 0x10000) {
      text = std::u16string(1, static_cast<char16_t>(character));
    } else {
      text = {static_cast<char16_t>(0xD7C0 + (character >> 10)),
              static_cast<char16_t>(0xDC00 + (character & 0x3FF))};
    }
    ASSERT_EQ(UTF8to16(UTF16to8(text)), text) << static_cast<std::uint32_t>(character);
  }
}

/// A locale that groups digits and writes a comma before decimals.
class CommaPunctuation : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(UTF8StringStream, WritesNumbersAlikeInEveryLocale) {
  const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
  UTF8StringStream stream;
  stream << 1234567 << ' ' << 1.5 << ' ' << 10.0 << ' ' << "\xC3\xA9" << std::flush;
  std::locale::global(previous);
  EXPECT_EQ(stream.Text(), "1234567 1.5 10 \xC3\xA9");
}

TEST(UTF8StringStream, TextMayBeAskedForAgainAndAgain) {
  UTF8StringStream stream;
  EXPECT_EQ(stream.Text(), "");
  stream << "a";
  EXPECT_EQ(stream.Text(), "a");
  stream << "b";
  EXPECT_EQ(stream.Text(), "ab");
}

}  // namespace
