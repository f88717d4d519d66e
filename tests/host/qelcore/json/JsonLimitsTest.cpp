// Texts that are meant to take all memory, time or stack.
#include <gtest/gtest.h>

#include <any>
#include <string>

#include "platform/qelcore/Json.h"

namespace {

namespace json = qelcore::json;

json::ParseError ErrorOf(const std::string& text) {
  json::ParseError error;
  EXPECT_FALSE(json::Parse(text, &error).has_value()) << text.substr(0, 20);
  return error;
}

std::string Repeated(const std::string& text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t time = 0; time < times; ++time) result += text;
  return result;
}

TEST(JsonLimits, ATextOf64MiBIsReadAndALongerOneIsNot) {
  const std::string longest = '"' + std::string(67'108'862, 'x') + '"';
  const std::any value = json::Parse(longest);
  ASSERT_NE(std::any_cast<std::string>(&value), nullptr);
  EXPECT_EQ(std::any_cast<std::string>(&value)->size(), 67'108'862U);

  const json::ParseError error = ErrorOf(longest + ' ');
  EXPECT_EQ(error.mMessage, "The text is too long.");
  EXPECT_EQ(error.mLine, 0U);
}

TEST(JsonLimits, TwoMebiValuesAreReadAndMoreAreNot) {
  // The array itself is one.
  const std::string most = '[' + Repeated("0,", 2'097'150) + "0]";
  const std::any value = json::Parse(most);
  ASSERT_NE(std::any_cast<json::Array>(&value), nullptr);
  EXPECT_EQ(std::any_cast<json::Array>(&value)->size(), 2'097'151U);

  const json::ParseError error = ErrorOf('[' + Repeated("0,", 2'097'151) + "0]");
  EXPECT_EQ(error.mMessage, "The text holds too many values.");
  EXPECT_EQ(error.mLine, 1U);
  EXPECT_EQ(error.mColumn, 4'194'304U);
}

TEST(JsonLimits, ValuesThatALaterOneReplacesCountToo) {
  EXPECT_EQ(ErrorOf('{' + Repeated("\"a\":0,", 2'097'151) + "\"a\":0}").mMessage,
            "The text holds too many values.");
}

TEST(JsonLimits, LongNumbersAreReadOrRefused) {
  const std::string digits(50'000'000, '7');
  const std::string tooLarge = "This is not a number, or it is too large.";
  EXPECT_EQ(ErrorOf(digits).mMessage, tooLarge);
  EXPECT_EQ(ErrorOf("[" + digits + "]").mMessage, tooLarge);
  EXPECT_EQ(ErrorOf("{\"blocklist_version\":-" + digits + "}").mMessage, tooLarge);
  EXPECT_EQ(ErrorOf("[1e" + digits + "]").mMessage, tooLarge);
  const std::any small = json::Parse("0." + digits);
  EXPECT_DOUBLE_EQ(std::any_cast<double>(small), 7.0 / 9.0);
  EXPECT_EQ(std::any_cast<double>(json::Parse("1e-" + digits)), 0.0);
}

TEST(JsonLimits, LongBlanksAreRead) {
  const std::string blanks(30'000'000, ' ');
  const std::any value = json::Parse(blanks + "[1" + blanks + "]");
  ASSERT_NE(std::any_cast<json::Array>(&value), nullptr);
}

TEST(JsonLimits, AZeroInsideATextStays) {
  const std::any value = json::Parse("{\"a\\u0000b\":\"\\u0000\"}");
  const std::string* const text =
      json::FindText(std::any_cast<const json::Dictionary&>(value), std::string_view("a\0b", 3));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(*text, std::string(1, '\0'));
}

}  // namespace
