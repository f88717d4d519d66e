#include "platform/qelcore/JsonView.h"

#include <gtest/gtest.h>

#include <any>
#include <array>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/qelcore/Json.h"

namespace {

namespace json = qelcore::json;
using json::View;

constexpr std::array<std::string_view, 3> kKeys{"a", "b", ""};

/// What can be read of a value, and what is said of the reads that cannot be.
std::string Describe(const View& value) {
  const auto attempt = [](const auto& read) {
    try {
      return read();
    } catch (const json::TypeError& error) {
      return std::string(error.what());
    }
  };
  std::string text = attempt([&] {
    const auto found = value.Text();
    return found ? "text " + std::string(*found) : "no text";
  });
  text += " | " + attempt([&] {
            const auto found = value.Integer();
            return found ? "integer " + std::to_string(*found) : "no integer";
          });
  text += " | " + attempt([&] {
            const auto found = value.Texts();
            std::string texts = found ? "texts" : "no texts";
            if (found) {
              for (const std::string_view one : *found) texts.append(" ").append(one);
            }
            return texts;
          });
  text += " | " + attempt([&] {
            const auto found = value.Elements();
            std::string elements = found ? "elements" : "no elements";
            if (found) {
              for (const View& element : *found) elements += " <" + Describe(element) + ">";
            }
            return elements;
          });
  text += " | " + attempt([&] {
            std::string members = "members";
            for (const View& member : value.Members(kKeys)) {
              members += member.IsThere() ? " <" + Describe(member) + ">" : " none";
            }
            return members;
          });
  return text;
}

/// The descriptions of all that a walk shows, by key; those of a later member replace those of an earlier.
class Describing : public json::TextVisitor {
 public:
  bool OnMember(std::string_view key, const View& value) override {
    mMembers[std::string(key)] = {Describe(value)};
    return true;
  }
  bool OnArray(std::size_t count) override {
    mCount = count;
    mMembers["list"] = {"elements"};
    return true;
  }
  bool OnElement(const View& element) override {
    mMembers["list"].push_back(Describe(element));
    return true;
  }

  std::map<std::string, std::vector<std::string>> mMembers;
  std::size_t mCount = 0;
};

/// The same of the dictionary that `Parse` makes; nothing when the text holds no object.
std::optional<std::map<std::string, std::vector<std::string>>> DescribeParsed(const std::string& text) {
  const std::any root = json::Parse(text);
  const auto* const object = std::any_cast<json::Dictionary>(&root);
  if (object == nullptr) return std::nullopt;
  std::map<std::string, std::vector<std::string>> members;
  for (const auto& [key, value] : *object) {
    const auto* const array = std::any_cast<json::Array>(value.get());
    if (key == "list" && array != nullptr) {
      members[key] = {"elements"};
      for (const std::any& element : *array) members[key].push_back(Describe(View(element)));
    } else {
      members[key] = {Describe(View(*value))};
    }
  }
  return members;
}

void ExpectTheSame(const std::string& given) {
  // With room behind its end, and without: the text is then copied.
  std::string roomy;
  roomy.reserve(given.size() + 64);
  roomy = given;
  std::string tight = given;
  tight.shrink_to_fit();
  for (const std::string* const text : {&roomy, &tight}) {
    Describing walked;
    const bool isWalked = json::WalkThroughObject(*text, "list", walked);
    const auto parsed = DescribeParsed(*text);
    ASSERT_EQ(isWalked, parsed.has_value()) << given;
    if (!parsed) continue;
    ASSERT_EQ(walked.mMembers, *parsed) << given;
  }
}

const std::vector<std::string> kSoundTexts{
    "{}",
    "{ } ",
    "\xEF\xBB\xBF{\"a\": 1}",
    R"({"a": "x", "b": [1, "y", {"a": null}], "": true})",
    R"({"list": [{"a": "x", "b": ["p", "q"]}, {"b": [[], {}]}, 7, "t", null]})",
    R"({"list": [], "a": 18446744073709551615, "b": -1})",
    R"({"list": 5, "a": 1.0, "b": 1e5})",
    R"({"a": 18446744073709551616})",
    R"({"list": [1], "a": 1, "list": [2, 3], "a": "later"})",
    R"({"list": [1], "list": "later"})",
    R"({"list": "earlier", "list": [1]})",
    R"({"a\u0062": "\u00e9\n\"\\", "\u0061": "\ud83d\ude00"})",
    "{\"a\": \"\xC3\xA9\xE2\x82\xAC\", \"b\": \"a \\\" b\"}",
    R"({"list": [{"a": "x", "a": "y", "b": {"a": {"b": [1, [2, [3]]]}}}]})",
};

TEST(JsonView, BothFormsAreReadAlike) {
  for (const std::string& text : kSoundTexts) {
    ASSERT_TRUE(DescribeParsed(text)) << text;
    ExpectTheSame(text);
  }
}

TEST(JsonView, WhatParseRefusesIsRefused) {
  for (const char* const text : {"",
                                 " ",
                                 "[]",
                                 "1",
                                 "\"a\"",
                                 "null",
                                 "{",
                                 "}",
                                 "{\"a\"}",
                                 "{\"a\":}",
                                 "{\"a\":1,}",
                                 "{,}",
                                 "{\"a\":1}}",
                                 "{\"a\":1} x",
                                 "{\"a\":1}{}",
                                 "{\"a\":01}",
                                 "{\"a\":+1}",
                                 "{\"a\":.5}",
                                 "{\"a\":1.}",
                                 "{\"a\":1e400}",
                                 "{\"a\":tru}",
                                 "{\"a\":truex}",
                                 "{\"a\":nul}",
                                 "{\"a\":NaN}",
                                 "{\"a\":\"x}",
                                 "{\"a\":\"\\x\"}",
                                 "{\"a\":\"\\ud800\"}",
                                 "{\"\\ud800\":1}",
                                 "{\"a\":\"\t\"}",
                                 "{\"a\":\"\xFF\"}",
                                 "{\"\xC3\":1}",
                                 "{'a':1}",
                                 "{\"a\":[1,]}",
                                 "{\"a\":[1 2]}",
                                 "{\"a\" 1}",
                                 "{\"a\":1 \"b\":2}",
                                 "{\"list\":[1,]}",
                                 "{\"list\":[}",
                                 "{\"list\":[{\"a\":1]}",
                                 "{a:1}",
                                 "{1:1}",
                                 "{\"a\":\"x\"y}",
                                 "{\"a\"b:1}"}) {
    EXPECT_FALSE(DescribeParsed(text)) << text;
    ExpectTheSame(text);
  }
}

TEST(JsonView, TheDepthIsBoundedAlike) {
  for (const char* const key : {"a", "list"}) {
    for (const int depth : {254, 255, 256, 257, 2000}) {
      const std::string begin(static_cast<std::size_t>(depth), '[');
      const std::string end(static_cast<std::size_t>(depth), ']');
      ExpectTheSame(std::string("{\"") + key + "\": " + begin + end + "}");
    }
  }
}

/// Sees everything and keeps nothing.
class Seeing : public json::TextVisitor {
 public:
  bool OnMember(std::string_view, const View&) override { return true; }
  bool OnArray(std::size_t) override { return true; }
  bool OnElement(const View&) override { return true; }
};

std::string Repeated(const std::string& text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t time = 0; time < times; ++time) result += text;
  return result;
}

TEST(JsonView, TheNumberOfValuesIsBoundedAlike) {
  // The object itself is one, and so is the array.
  const struct {
    const char* mBegin;
    const char* mRepeated;
    const char* mEnd;
    std::size_t mMost;
  } rows[] = {{"{", "\"a\":0,", "\"a\":0}", 2'097'150},
              {"{\"list\":[", "0,", "0]}", 2'097'149},
              {"{\"a\":[", "0,", "0]}", 2'097'149},
              {"{\"list\":[[", "0,", "0]]}", 2'097'148},
              {"{\"a\":[0,1,2],\"list\":[", "0,", "0]}", 2'097'145},
              {"{\"list\":[0,1],\"list\":[", "0,", "0]}", 2'097'146}};
  for (const auto& row : rows) {
    const std::string most = row.mBegin + Repeated(row.mRepeated, row.mMost) + row.mEnd;
    const std::string tooMany = row.mBegin + Repeated(row.mRepeated, row.mMost + 1) + row.mEnd;
    Seeing visitor;
    EXPECT_TRUE(json::WalkThroughObject(most, "list", visitor)) << row.mBegin;
    EXPECT_FALSE(json::WalkThroughObject(tooMany, "list", visitor)) << row.mBegin;
  }
}

TEST(JsonView, TheLengthIsBoundedAlike) {
  const std::string mark = "\xEF\xBB\xBF";
  for (const std::string& before : {std::string(), mark}) {
    const std::string longest = before + "{\"a\":\"" + std::string(67'108'864 - 8, 'x') + "\"}";
    Seeing visitor;
    EXPECT_TRUE(json::WalkThroughObject(longest, "list", visitor));
    EXPECT_TRUE(json::Parse(longest).has_value());
    EXPECT_FALSE(json::WalkThroughObject(longest + ' ', "list", visitor));
    EXPECT_FALSE(json::Parse(longest + ' ').has_value());
  }
}

TEST(JsonView, DamagedTextsAreReadAlike) {
  std::mt19937 random(20'000);
  const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
  const std::string characters = "{}[]:,\"\\ 01-+.eatlnu\n\t\x7F\xC3\xA9\xFF";
  for (int time = 0; time < 20'000; ++time) {
    std::string text = kSoundTexts[below(kSoundTexts.size())];
    for (std::size_t left = 1 + below(3); left > 0; --left) {
      const std::size_t place = below(text.size());
      switch (below(4)) {
        case 0:
          text.erase(place, 1 + below(3));
          break;
        case 1:
          text.insert(place, 1, characters[below(characters.size())]);
          break;
        case 2:
          text[place] = characters[below(characters.size())];
          break;
        default:
          text.insert(place, text.substr(below(text.size()), 1 + below(8)));
      }
      if (text.empty()) text = " ";
    }
    ExpectTheSame(text);
    if (HasFatalFailure()) return;
  }
}

TEST(JsonView, NothingIsOfEveryType) {
  const View nothing;
  EXPECT_FALSE(nothing.IsThere());
  EXPECT_EQ(nothing.Text(), std::nullopt);
  EXPECT_EQ(nothing.Integer(), std::nullopt);
  EXPECT_FALSE(nothing.Elements());
  EXPECT_FALSE(nothing.Texts());
  EXPECT_THROW(static_cast<void>(nothing.Members(kKeys)), json::TypeError);
}

TEST(JsonView, AMemberWithoutAValueIsThereAndOfNoType) {
  const std::any object = json::Dictionary{{"a", nullptr}};
  const auto [member, other, unnamed] = View(object).Members(kKeys);
  ASSERT_TRUE(member.IsThere());
  try {
    static_cast<void>(member.Text());
    FAIL();
  } catch (const json::TypeError& error) {
    EXPECT_STREQ(error.what(), "\"a\" is nothing, expected is a text.");
  }
}

TEST(JsonView, TheVisitorEndsTheWalk) {
  class Ending : public Describing {
   public:
    explicit Ending(std::string what) : mWhat(std::move(what)) {}
    bool OnMember(std::string_view key, const View&) override { return mSeen += key, mWhat != key; }
    bool OnArray(std::size_t count) override {
      mSeen += '#' + std::to_string(count);
      return mWhat != "array";
    }
    bool OnElement(const View&) override { return mSeen += 'e', mWhat != "element"; }

    std::string mWhat;
    std::string mSeen;
  };
  const std::string text = R"({"a": 1, "list": [1, 2, 3], "b": 2})";
  const struct {
    const char* mWhat;
    const char* mSeen;
    bool mIsWalked;
  } rows[] = {{"none", "a#3eeeb", true},
              {"a", "a", false},
              {"array", "a#3", false},
              {"element", "a#3e", false},
              {"b", "a#3eeeb", false}};
  for (const auto& row : rows) {
    Ending visitor(row.mWhat);
    EXPECT_EQ(json::WalkThroughObject(text, "list", visitor), row.mIsWalked) << row.mWhat;
    EXPECT_EQ(visitor.mSeen, row.mSeen);
  }
}

}  // namespace
