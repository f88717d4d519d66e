#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/qelcore/Json.h"

namespace {

namespace json = qelcore::json;

/// An object that holds one value of each type under the type's name.
json::Dictionary OneOfEach() {
  return json::AsDictionary(json::Parse(R"({
    "text": "abc", "array": ["a", "b"], "mixed": ["a", 1], "object": {"x": 1}, "true": true, "false": false,
    "integer": 12, "negative": -2, "large": 18446744073709551615, "number": 1.0, "null": null, "empty": []})"));
}

TEST(JsonAccess, TypedReadsGiveTheValue) {
  const json::Dictionary object = OneOfEach();
  EXPECT_EQ(*json::FindText(object, "text"), "abc");
  EXPECT_EQ(json::FindArray(object, "array")->size(), 2U);
  EXPECT_EQ(json::FindDictionary(object, "object")->size(), 1U);
  EXPECT_EQ(json::FindBool(object, "true"), true);
  EXPECT_EQ(json::FindBool(object, "false"), false);
  EXPECT_EQ(json::FindInteger(object, "integer"), 12U);
  EXPECT_EQ(json::FindInteger(object, "negative"), 0xFFFFFFFFFFFFFFFEU);
  EXPECT_EQ(json::FindInteger(object, "large"), 0xFFFFFFFFFFFFFFFFU);
  EXPECT_EQ(json::FindTexts(object, "array"), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(json::FindTexts(object, "empty"), std::vector<std::string>());
}

TEST(JsonAccess, AbsentKeysGiveNothing) {
  const json::Dictionary object = OneOfEach();
  for (const char* const key : {"", "Text", "text ", "absent"}) {
    EXPECT_FALSE(json::Has(object, key)) << key;
    EXPECT_EQ(json::FindText(object, key), nullptr) << key;
    EXPECT_EQ(json::FindArray(object, key), nullptr) << key;
    EXPECT_EQ(json::FindDictionary(object, key), nullptr) << key;
    EXPECT_EQ(json::FindBool(object, key), std::nullopt) << key;
    EXPECT_EQ(json::FindInteger(object, key), std::nullopt) << key;
    EXPECT_EQ(json::FindTexts(object, key), std::nullopt) << key;
  }
  EXPECT_TRUE(json::Has(object, "null"));
}

TEST(JsonAccess, EveryOtherTypeThrows) {
  const json::Dictionary object = OneOfEach();
  struct Reader {
    const char* mName;
    std::function<void(const char*)> mRead;
    std::vector<std::string> mFits;
  };
  const Reader readers[] = {
      {"text", [&](const char* key) { (void)json::FindText(object, key); }, {"text"}},
      {"array", [&](const char* key) { (void)json::FindArray(object, key); }, {"array", "mixed", "empty"}},
      {"object", [&](const char* key) { (void)json::FindDictionary(object, key); }, {"object"}},
      {"boolean", [&](const char* key) { (void)json::FindBool(object, key); }, {"true", "false"}},
      {"integer",
       [&](const char* key) { (void)json::FindInteger(object, key); },
       {"integer", "negative", "large"}},
      {"texts", [&](const char* key) { (void)json::FindTexts(object, key); }, {"array", "empty"}},
  };
  for (const Reader& reader : readers) {
    for (const auto& [key, value] : object) {
      const bool fits = std::find(reader.mFits.begin(), reader.mFits.end(), key) != reader.mFits.end();
      if (fits) {
        EXPECT_NO_THROW(reader.mRead(key.c_str())) << reader.mName << " of " << key;
      } else {
        EXPECT_THROW(reader.mRead(key.c_str()), json::TypeError) << reader.mName << " of " << key;
      }
    }
  }
}

TEST(JsonAccess, TheErrorNamesTheKeyAndBothTypes) {
  const json::Dictionary object = OneOfEach();
  try {
    (void)json::FindInteger(object, "true");
    FAIL() << "nothing was thrown";
  } catch (const json::TypeError& error) {
    EXPECT_STREQ(error.what(), "\"true\" is a boolean, expected is an integer.");
  }
}

TEST(JsonAccess, AsDictionaryThrowsForEverythingElse) {
  for (const char* const text : {"[]", "\"{}\"", "1", "true", "null", "1.5", "no JSON"}) {
    const std::any value = json::Parse(text);
    EXPECT_THROW((void)json::AsDictionary(value), json::TypeError) << text;
  }
}

TEST(JsonAccess, SetReplacesWhatStoodThere) {
  json::Dictionary object;
  json::Set(object, "a", std::string("first"));
  json::Dictionary copy = object;
  json::Set(object, "a", true);
  EXPECT_EQ(json::FindBool(object, "a"), true);
  EXPECT_EQ(*json::FindText(copy, "a"), "first");
  EXPECT_EQ(object.size(), 1U);
}

}  // namespace
