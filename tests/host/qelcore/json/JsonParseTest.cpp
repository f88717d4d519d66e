#include <gtest/gtest.h>

#include <any>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "platform/qelcore/Json.h"

namespace {

namespace json = qelcore::json;

template <typename Value>
void ExpectValue(const std::string& text, const Value& expected) {
  json::ParseError error;
  const std::any value = json::Parse(text, &error);
  const Value* const held = std::any_cast<Value>(&value);
  ASSERT_NE(held, nullptr) << text << ": " << error.mMessage;
  EXPECT_EQ(*held, expected) << text;
}

TEST(JsonParse, NumbersGetTheirType) {
  ExpectValue("0", std::int64_t{0});
  ExpectValue("-0", std::int64_t{0});
  ExpectValue("-1", std::int64_t{-1});
  ExpectValue("9223372036854775807", std::numeric_limits<std::int64_t>::max());
  ExpectValue("-9223372036854775808", std::numeric_limits<std::int64_t>::min());
  ExpectValue("9223372036854775808", std::uint64_t{9223372036854775808U});
  ExpectValue("18446744073709551615", std::numeric_limits<std::uint64_t>::max());
  ExpectValue("18446744073709551616", 18446744073709551616.0);
  ExpectValue("-9223372036854775809", -9223372036854775809.0);
  ExpectValue("123456789012345678901234567890", 123456789012345678901234567890.0);
  ExpectValue("1" + std::string(300, '0'), 1e300);
  ExpectValue("1.0", 1.0);
  ExpectValue("-0.0", -0.0);
  ExpectValue("1e2", 100.0);
  ExpectValue("1E+2", 100.0);
  ExpectValue("12.5e-1", 1.25);
  ExpectValue("0.1", 0.1);
  ExpectValue("1.7976931348623157e308", std::numeric_limits<double>::max());
  ExpectValue("2.2250738585072014e-308", std::numeric_limits<double>::min());
  ExpectValue("5e-324", std::numeric_limits<double>::denorm_min());
  ExpectValue("1e-400", 0.0);
  ExpectValue("0.000e999999999999999999999", 0.0);
  ExpectValue("1e-999999999999999999999", 0.0);
  EXPECT_TRUE(std::signbit(std::any_cast<double>(json::Parse("-0.0"))));
  EXPECT_TRUE(std::signbit(std::any_cast<double>(json::Parse("-1e-400"))));
}

TEST(JsonParse, SimpleValues) {
  ExpectValue("true", true);
  ExpectValue("false", false);
  ExpectValue("null", nullptr);
  ExpectValue(" \t\r\n true \t\r\n ", true);
  ExpectValue("\xEF\xBB\xBFtrue", true);
}

TEST(JsonParse, Strings) {
  ExpectValue(R"("")", std::string());
  ExpectValue(R"("plain")", std::string("plain"));
  ExpectValue(R"("\"\\\/\b\f\n\r\t")", std::string("\"\\/\b\f\n\r\t"));
  ExpectValue(R"("\u0041\u00e9\u20AC")", std::string("A\xC3\xA9\xE2\x82\xAC"));
  ExpectValue(R"("\ud83d\ude00")", std::string("\xF0\x9F\x98\x80"));
  ExpectValue(R"("\u0000")", std::string(1, '\0'));
  ExpectValue("\"\x7F\"", std::string("\x7F"));
  ExpectValue("\"\xC3\xA9\xF0\x9F\x98\x80\xEF\xBF\xBD\"",
              std::string("\xC3\xA9\xF0\x9F\x98\x80\xEF\xBF\xBD"));
  ExpectValue("\"" + std::string(100000, 'x') + "\"", std::string(100000, 'x'));
  std::string many;
  for (int count = 0; count < 20000; ++count) {
    many += "\\u20ac";
  }
  EXPECT_EQ(std::any_cast<std::string>(json::Parse('"' + many + '"')).size(), 60000U);
}

TEST(JsonParse, ObjectsAndArraysNest) {
  const std::any value = json::Parse(R"({"b": [1, {"c": []}, "x"], "a": {}, "": null})");
  const json::Dictionary& object = json::AsDictionary(value);
  ASSERT_EQ(object.size(), 3U);
  EXPECT_EQ(object.begin()->first, "");
  EXPECT_TRUE(json::FindDictionary(object, "a")->empty());
  const json::Array& array = *json::FindArray(object, "b");
  ASSERT_EQ(array.size(), 3U);
  EXPECT_EQ(std::any_cast<std::int64_t>(array[0]), 1);
  EXPECT_TRUE(json::FindArray(json::AsDictionary(array[1]), "c")->empty());
  EXPECT_EQ(std::any_cast<std::string>(array[2]), "x");
}

TEST(JsonParse, TheLaterOfTwoEqualKeysWins) {
  const std::any value = json::Parse(R"({"a": 1, "b": 2, "a": "later", "\u0062": 3})");
  const json::Dictionary& object = json::AsDictionary(value);
  EXPECT_EQ(object.size(), 2U);
  EXPECT_EQ(*json::FindText(object, "a"), "later");
  EXPECT_EQ(json::FindInteger(object, "b"), 3U);
}

TEST(JsonParse, KeysMayHoldAnything) {
  const std::any value = json::Parse("{\"a\\nb\\u0000\\\"\":1,\"\xC3\xA9\":2}");
  EXPECT_EQ(json::FindInteger(json::AsDictionary(value), std::string("a\nb\0\"", 5)), 1U);
  EXPECT_EQ(json::FindInteger(json::AsDictionary(value), "\xC3\xA9"), 2U);
}

/// Texts that are no JSON, each for a reason of its own.
const std::string kMalformed[] = {
    "",
    " ",
    "\n\t\r ",
    "\xEF\xBB\xBF",
    "\xEF\xBB\xBF\xEF\xBB\xBF"
    "1",
    // numbers
    "01",
    "-01",
    "00",
    "+1",
    "1.",
    ".5",
    "-",
    "--1",
    "1e",
    "1e+",
    "1.e5",
    "1.5.5",
    "0x10",
    "1_000",
    "1,000",
    "NaN",
    "Infinity",
    "-Infinity",
    "1e400",
    "-1e400",
    "1a",
    "1 2",
    "12\xC3\xA9",
    "\xD9\xA1",
    // words
    "truu",
    "tru",
    "True",
    "TRUE",
    "truefalse",
    "true false",
    "nul",
    "nulll",
    "undefined",
    "fals",
    "falsey",
    "t",
    "n",
    // strings
    "\"",
    "\"abc",
    "abc\"",
    "'abc'",
    "\"a\"b",
    "\"a\" \"b\"",
    "\"\\x41\"",
    "\"\\u12\"",
    "\"\\u12g4\"",
    "\"\\",
    "\"\\\"",
    "\"a\nb\"",
    "\"a\tb\"",
    std::string("\"a\0b\"", 5),
    "\"\x1F\"",
    "\"\\'\"",
    "\"\\U0041\"",
    // surrogates
    "\"\\ud800\"",
    "\"\\udc00\"",
    "\"\\ud800\\ud800\"",
    "\"\\ud83dx\"",
    "\"\\ud83d\\n\"",
    "\"\\ude00\\ud83d\"",
    "[\"\\ud83d\\u0041\"]",
    "{\"\\ud800\":1}",
    // UTF-8
    "\"\xFF\"",
    "\"\xC3\"",
    "\"\xC0\xAF\"",
    "\"\xED\xA0\x80\"",
    "\"\xF5\x80\x80\x80\"",
    "\"\xE2\x82\"",
    "{\"\xFF\":1}",
    "[1]\xFF",
    std::string("\xFF\xFE[\0]\0", 6),
    // arrays
    "[",
    "]",
    "[1",
    "[1,",
    "[1,]",
    "[,1]",
    "[,]",
    "[1,,2]",
    "[1 2]",
    "[1;2]",
    "[1:2]",
    "[[1]",
    "[1]]",
    "[1}",
    "[1]2",
    "[1],",
    "[true1]",
    "[\"a\"\"b\"]",
    "[\"a\":1]",
    "[1,2",
    "[nul]",
    "[truu,1]",
    "[1][2]",
    "[1\"a\"]",
    // objects
    "{",
    "}",
    "{\"a\"",
    "{\"a\":",
    "{\"a\":1",
    "{\"a\":1,",
    "{\"a\":1,}",
    "{,}",
    "{\"a\" 1}",
    "{\"a\":}",
    "{\"a\",1}",
    "{a:1}",
    "{1:1}",
    "{'a':1}",
    "{\"a\":1 \"b\":2}",
    "{\"a\":1;\"b\":2}",
    "{\"a\":1}}",
    "{\"a\":1]",
    "{\"a\"::1}",
    "{:1}",
    "{\"a\":1,,\"b\":2}",
    "{null:1}",
    "{\"a\":1}{",
    "{\"a\":1} x",
    "{[]:1}",
    "{\"a\":1,\"b\"}",
    "{\"a\":{}",
    // what other notations allow
    "// comment\n1",
    "1 // comment",
    "/* */ 1",
    "# 1",
    "[1,/**/2]",
    "\x0B"
    "1",
    "1\x0C",
    std::string("1\0", 2),
    std::string("\0", 1),
    "\xC2\xA0"
    "1",
    "\xE2\x80\xA8"
    "1",
};

TEST(JsonParse, MalformedTextsGiveAnEmptyValueAndAReason) {
  EXPECT_GE(std::size(kMalformed), 60U);
  for (const std::string& text : kMalformed) {
    json::ParseError error;
    EXPECT_FALSE(json::Parse(text, &error).has_value()) << text;
    EXPECT_FALSE(error.mMessage.empty()) << text;
    EXPECT_EQ(error.mLine == 0, error.mColumn == 0) << text;
    EXPECT_FALSE(json::Parse(text).has_value()) << text;
    // As a part of something bigger it is no better.
    EXPECT_FALSE(json::Parse("[1," + text + "\n,2,{}").has_value()) << text;
  }
}

TEST(JsonParse, AFaultyPartSpoilsTheWhole) {
  for (const char* const atom : {"01", "+1", "1.", ".5", "1e", "NaN", "1e400", "truu", "nul", "falsey",
                                 "\"\\x\"", "\"\\ud800\"", "'a'", "x", "1 2", "\"a\"\"b\"", "true1", "--1"}) {
    const std::string part = atom;
    for (const std::string& text :
         {"[" + part + "]", "[0," + part + "]", "[" + part + ",0]", "{\"a\":" + part + "}",
          "{\"a\":" + part + ",\"b\":0}", "[[" + part + "],0]", "{\"a\":[{\"b\":" + part + "}]}"}) {
      EXPECT_FALSE(json::Parse(text).has_value()) << text;
    }
  }
}

TEST(JsonParse, TextCutOffAnywhereIsMalformed) {
  const std::string text =
      "{\"name\":\"N\\u00e9\\ud83d\\ude00 "
      "\xC3\xA9\",\"list\":[1,-2.5e+3,true,false,null,{\"x\":[]}],\"n\":18446744073709551615}";
  ASSERT_TRUE(json::Parse(text).has_value());
  for (std::size_t length = 0; length < text.size(); ++length) {
    json::ParseError error;
    EXPECT_FALSE(json::Parse(text.substr(0, length), &error).has_value()) << length;
    EXPECT_FALSE(error.mMessage.empty()) << length;
  }
}

TEST(JsonParse, NestingStopsAtTheLimit) {
  const auto nestedArrays = [](std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
  };
  EXPECT_TRUE(json::Parse(nestedArrays(256)).has_value());
  json::ParseError error;
  EXPECT_FALSE(json::Parse(nestedArrays(257), &error).has_value());
  EXPECT_EQ(error.mMessage, "The value is nested too deeply.");
  EXPECT_EQ(error.mColumn, 257U);

  std::string objects;
  for (int depth = 0; depth < 256; ++depth) {
    objects += "{\"a\":";
  }
  EXPECT_TRUE(json::Parse(objects + "1" + std::string(256, '}')).has_value());
  EXPECT_FALSE(json::Parse("[" + objects + "1" + std::string(256, '}') + "]").has_value());
}

TEST(JsonParse, EndlessNestingDoesNotOverflowTheStack) {
  std::string objects;
  for (int depth = 0; depth < 300000; ++depth) {
    objects += "{\"a\":";
  }
  for (const std::string& text :
       {std::string(1000000, '['), std::string(1000000, '[') + std::string(1000000, ']'),
        std::string(1000000, '[') + "]", std::string(1000000, '{'), std::string(1000000, ']'), objects,
        objects + "}"}) {
    EXPECT_FALSE(json::Parse(text).has_value()) << text.substr(0, 20);
  }
}

TEST(JsonParse, LineAndColumnShowThePlace) {
  struct Row {
    const char* mText;
    std::size_t mLine;
    std::size_t mColumn;
  };
  const Row rows[] = {
      {"{\"a\": 1,\n \"b\": truu}", 2, 7},
      {"[1,\n2,\n  03]", 3, 3},
      {"[1, x]", 1, 5},
      {"\n\n\"a\x01\"", 3, 3},
      {"[1,\n\"abc", 2, 1},
      {"[\"\\ud800\"]", 1, 2},
      {"[1]\n[2]", 2, 1},
      {"[\n\"\xFF\"]", 2, 2},
      {"\xEF\xBB\xBF[x]", 1, 2},
  };
  for (const Row& row : rows) {
    json::ParseError error;
    EXPECT_FALSE(json::Parse(row.mText, &error).has_value()) << row.mText;
    EXPECT_EQ(error.mLine, row.mLine) << row.mText << ": " << error.mMessage;
    EXPECT_EQ(error.mColumn, row.mColumn) << row.mText << ": " << error.mMessage;
  }
}

TEST(JsonParse, LargeDocumentsAreRead) {
  std::string text = "[";
  for (int index = 0; index < 50000; ++index) {
    text += (index == 0 ? "" : ",") + std::string("{\"name\":\"device ") + std::to_string(index) +
            "\",\"n\":" + std::to_string(index) + "}";
  }
  const std::any value = json::Parse(text + "]");
  const auto* const array = std::any_cast<json::Array>(&value);
  ASSERT_NE(array, nullptr);
  ASSERT_EQ(array->size(), 50000U);
  EXPECT_EQ(*json::FindText(json::AsDictionary(array->back()), "name"), "device 49999");
}

}  // namespace
