#include <gtest/gtest.h>

#include <any>
#include <cstdint>
#include <limits>
#include <string>

#include "platform/qelcore/Json.h"

namespace {

namespace json = qelcore::json;

TEST(JsonSerialise, WritesEveryType) {
  json::Dictionary object;
  json::Set(object, "text", std::string("a"));
  json::Set(object, "integer", std::int64_t{-5});
  json::Set(object, "large", std::numeric_limits<std::uint64_t>::max());
  json::Set(object, "number", 1.5);
  json::Set(object, "yes", true);
  json::Set(object, "no", false);
  json::Set(object, "null", nullptr);
  json::Set(object, "array", json::Array{std::int64_t{1}, json::Array{}, json::Dictionary{}});
  EXPECT_EQ(
      json::Serialise(object),
      R"({"array":[1,[],{}],"integer":-5,"large":18446744073709551615,"no":false,"null":null,"number":1.5,)"
      R"("text":"a","yes":true})");
}

TEST(JsonSerialise, KeysAreSortedByteByByte) {
  json::Dictionary object;
  for (const char* const key : {"b", "a", "B", "_", "\xC3\xA9", "", "aa", "a\n"}) {
    json::Set(object, key, true);
  }
  EXPECT_EQ(
      json::Serialise(object),
      "{\"\":true,\"B\":true,\"_\":true,\"a\":true,\"a\\n\":true,\"aa\":true,\"b\":true,\"\xC3\xA9\":true}");
}

TEST(JsonSerialise, StringsAreEscapedWhereTheyMustBe) {
  struct Row {
    std::string mText;
    std::string mJson;
  };
  const Row rows[] = {
      {"", R"("")"},
      {"a\"b\\c/d", R"("a\"b\\c/d")"},
      {"\b\f\n\r\t", R"("\b\f\n\r\t")"},
      {std::string("\0\x01\x0B\x1F", 4), R"("\u0000\u0001\u000b\u001f")"},
      {"\x7F\xC3\xA9\xF0\x9F\x98\x80\xE2\x80\xA8", "\"\x7F\xC3\xA9\xF0\x9F\x98\x80\xE2\x80\xA8\""},
      {"a\xFFz", "\"a\xEF\xBF\xBDz\""},
      {"\xED\xA0\x80", "\"\xEF\xBF\xBD\""},
      {"\xC3", "\"\xEF\xBF\xBD\""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(json::Serialise(row.mText), row.mJson) << row.mJson;
    EXPECT_TRUE(json::Parse(json::Serialise(row.mText)).has_value()) << row.mJson;
  }
}

TEST(JsonSerialise, EveryControlCharacterReadsBack) {
  std::string text;
  for (int character = 0; character < 0x20; ++character) {
    text += static_cast<char>(character);
  }
  EXPECT_EQ(std::any_cast<std::string>(json::Parse(json::Serialise(text))), text);
}

TEST(JsonSerialise, NumbersReadBackAsTheyWere) {
  struct Row {
    double mValue;
    const char* mText;
  };
  const Row rows[] = {
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {1.0, "1.0"},
      {0.1, "0.1"},
      {1e21, "1e+21"},
      {1.7976931348623157e308, "1.7976931348623157e+308"},
      {5e-324, "5e-324"},
      {-1.5, "-1.5"},
      {123456789.0, "123456789.0"},
      {1.0 / 3.0, "0.3333333333333333"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(json::Serialise(row.mValue), row.mText);
    const std::any again = json::Parse(json::Serialise(row.mValue));
    ASSERT_NE(std::any_cast<double>(&again), nullptr) << row.mText;
    EXPECT_EQ(std::any_cast<double>(again), row.mValue) << row.mText;
  }
  for (const std::int64_t value : {std::numeric_limits<std::int64_t>::min(), std::int64_t{0},
                                   std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(std::any_cast<std::int64_t>(json::Parse(json::Serialise(value))), value);
  }
}

TEST(JsonSerialise, WhatJSONCannotHoldThrows) {
  struct Unknown {};
  json::Dictionary withNull;
  withNull.emplace("a", nullptr);
  const std::any rows[] = {
      std::any(),
      std::any(1),
      std::any(1U),
      std::any(1.0F),
      std::any("a literal"),
      std::any(Unknown()),
      std::any(std::numeric_limits<double>::infinity()),
      std::any(-std::numeric_limits<double>::infinity()),
      std::any(std::numeric_limits<double>::quiet_NaN()),
      std::any(withNull),
      std::any(json::Array{std::any()}),
  };
  for (const std::any& row : rows) {
    EXPECT_THROW((void)json::Serialise(row), json::TypeError) << row.type().name();
  }
}

TEST(JsonSerialise, WhatWasReadIsWrittenAlike) {
  for (const char* const text : {R"({"a":[1,2.5,"x",true,false,null,{}],"b":{"c":[[]]}})",
                                 R"("\ud83d\ude00")", "[]", "{}", "-1", "1e300", "0.1"}) {
    const std::string once = json::Serialise(json::Parse(text));
    EXPECT_EQ(json::Serialise(json::Parse(once)), once) << text;
  }
}

}  // namespace
