// The tree holds what the parser reads, and its places are right.
#include "authoring/json/JsonTree.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "authoring/json/TextPlaces.h"
#include "platform/qelcore/Json.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

namespace json = qelcore::json;
using authoring::JsonKind;
using authoring::JsonMember;
using authoring::JsonNode;

/// The tree as the parser would have read it; numbers that are no integers become null.
std::any ToAny(const JsonNode& node) {
  switch (node.mKind) {
    case JsonKind::kObject: {
      json::Dictionary object;
      for (const JsonMember& member : node.mMembers) json::Set(object, member.mKey, ToAny(member.mValue));
      return object;
    }
    case JsonKind::kArray: {
      json::Array array;
      for (const JsonNode& element : node.mElements) array.push_back(ToAny(element));
      return array;
    }
    case JsonKind::kText:
      return node.mText;
    case JsonKind::kInteger:
      return node.mInteger;
    case JsonKind::kBoolean:
      return true;
    case JsonKind::kNull:
    case JsonKind::kNumber:
      break;
  }
  return nullptr;
}

/// The parser's value in the same terms.
std::any Simplify(const std::any& value) {
  if (const auto* const object = std::any_cast<json::Dictionary>(&value)) {
    json::Dictionary simple;
    for (const auto& [key, member] : *object) json::Set(simple, key, Simplify(*member));
    return simple;
  }
  if (const auto* const array = std::any_cast<json::Array>(&value)) {
    json::Array simple;
    for (const std::any& element : *array) simple.push_back(Simplify(element));
    return simple;
  }
  if (const auto* const integer = std::any_cast<std::int64_t>(&value))
    return static_cast<std::uint64_t>(*integer);
  if (std::any_cast<double>(&value) != nullptr) return nullptr;
  if (std::any_cast<bool>(&value) != nullptr) return true;
  return value;
}

void ExpectSameAsParser(const std::string& text, const std::string& name) {
  const std::any value = json::Parse(text);
  if (!value.has_value()) return;
  EXPECT_EQ(json::Serialise(ToAny(authoring::ReadJsonTree(text))), json::Serialise(Simplify(value))) << name;
}

TEST(JsonTreeTest, HoldsWhatTheParserReads) {
  for (const char* const text : {
           "{}",
           "[]",
           "0",
           "-0",
           "-1",
           "18446744073709551615",
           "18446744073709551616",
           "-9223372036854775808",
           "-9223372036854775809",
           "1.0",
           "1e3",
           "true",
           "false",
           "null",
           "\"\"",
           " [ 1 , [ ] , { } ] ",
           R"(["\"\\\/\b\f\n\r\t", "\u0041\u00e4\u20ac\ud83d\ude00", "äöü€"])",
           "\xEF\xBB\xBF{\"a\": [1, {\"b\": 2}]}",
           R"({"a": 1, "a": {"b": 2, "b": "x"}, "\u0061": [null]})",
           "[[[[]]], {\"\": {\"\": \"\"}}]",
           "[\n1,\r\n2\t]",
       }) {
    ExpectSameAsParser(text, text);
  }
}

TEST(JsonTreeTest, HoldsWhatTheParserReadsOfEveryFile) {
  const std::filesystem::path root = QELSCR_SOURCE_DIR;
  int count = 0;
  for (const char* const folder : {"tests/fuzz/corpus", "data", "docs/examples"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
      if (!entry.is_regular_file()) continue;
      ExpectSameAsParser(testsupport::ReadWholeFile(entry.path()), entry.path().string());
      ++count;
    }
  }
  EXPECT_GT(count, 100);
}

/// Whoever asks it without asking the parser gets nonsense, but neither a crash nor a loop.
TEST(JsonTreeTest, ComesToAnEndWithUnsoundTexts) {
  for (const char* const text : {"", "{", "[", "\"", "\"\\", "\"\\u", "\"\\ud800", "\"\\ud800\\u", "[1 2",
                                 "{\"a\" 1", "]", "}", "[,", ":"}) {
    static_cast<void>(authoring::ReadJsonTree(text));
  }
}

TEST(JsonTreeTest, KnowsPlaces) {
  const std::string text = "\xEF\xBB\xBF{\"ä\": 1,\n  \"b\": [2,\r\n\t\"€\", {}]}";
  const JsonNode root = authoring::ReadJsonTree(text);
  const authoring::TextPlaces places(text);
  const auto at = [&](std::size_t offset) {
    const authoring::Place place = places.At(offset);
    return std::to_string(place.mLine) + ':' + std::to_string(place.mColumn);
  };
  EXPECT_EQ(at(root.mOffset), "1:1");
  EXPECT_EQ(at(root.mMembers[0].mKeyOffset), "1:2");
  EXPECT_EQ(at(root.mMembers[0].mValue.mOffset), "1:7");
  EXPECT_EQ(at(root.mMembers[1].mKeyOffset), "2:3");
  const JsonNode& array = root.mMembers[1].mValue;
  EXPECT_EQ(at(array.mElements[0].mOffset), "2:9");
  EXPECT_EQ(at(array.mElements[1].mOffset), "3:2");
  EXPECT_EQ(at(array.mElements[2].mOffset), "3:7");
  EXPECT_EQ(at(text.size()), "3:11");
  EXPECT_EQ(at(text.size() + 100), "3:11");
}

/// The parser counts bytes, editors characters.
TEST(JsonTreeTest, TurnsTheParsersPlacesIntoCharacters) {
  const std::string text = "\xEF\xBB\xBF[\"äöü\", x]";
  json::ParseError error;
  ASSERT_FALSE(json::Parse(text, &error).has_value());
  EXPECT_EQ(error.mColumn, 12U);
  const authoring::TextPlaces places(text);
  const auto offset = places.OffsetOf(error.mLine, error.mColumn);
  ASSERT_TRUE(offset.has_value());
  const authoring::Place place = places.At(*offset);
  EXPECT_EQ(place.mLine, 1U);
  EXPECT_EQ(place.mColumn, 9U);
  EXPECT_FALSE(places.OffsetOf(0, 0).has_value());
  EXPECT_FALSE(places.OffsetOf(2, 1).has_value());
}

TEST(JsonTreeTest, OfEqualKeysTheLastCounts) {
  const JsonNode root = authoring::ReadJsonTree(R"({"a": 1, "b": "x", "a": "y", "c": 2})");
  ASSERT_EQ(root.mMembers.size(), 4U);
  ASSERT_NE(root.FindText("a"), nullptr);
  EXPECT_EQ(*root.FindText("a"), "y");
  EXPECT_EQ(root.FindText("c"), nullptr);
  EXPECT_EQ(root.Find("d"), nullptr);
}

}  // namespace
