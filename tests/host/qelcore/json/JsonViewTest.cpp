#include "platform/qelcore/JsonView.h"

#include <gtest/gtest.h>

#include <any>
#include <array>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
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

enum class Outcome { kRead, kRefused, kLeftToParse };

/// What can be read of a document; nothing when it cannot be read whole.
std::optional<std::string> DescribeDocument(const json::Document& document) {
  if (!document.Root().IsThere()) return std::nullopt;
  std::string text = Describe(document.Root());
  try {
    document.VisitElements([&](const View& element) { text += "\n" + Describe(element); });
  } catch (const json::LeftToParse&) {
    return std::nullopt;
  }
  return text;
}

/// The same of what `Parse` made.
std::string DescribeParsed(const std::any& parsed) {
  std::string text = Describe(View(parsed));
  const auto* const object = std::any_cast<json::Dictionary>(&parsed);
  if (object == nullptr || !object->contains("list")) return text;
  const auto* const list = std::any_cast<json::Array>(object->find("list")->second.get());
  if (list == nullptr) return text;
  for (const std::any& element : *list) text += "\n" + Describe(View(element));
  return text;
}

std::optional<std::string> DescribeDocument(const std::string& text, json::Cutting cutting,
                                            std::size_t pieceLength) {
  return DescribeDocument(json::Document(text, "list", cutting, pieceLength));
}

/// A document is read as `Parse` reads it, or not at all, wherever it is cut.
Outcome ExpectTheSame(const std::string& text) {
  const std::any parsed = json::Parse(text);
  const std::optional<std::string> whole = DescribeDocument(text, json::Cutting::kSurely, text.size() + 1);
  EXPECT_EQ(whole, DescribeDocument(text, json::Cutting::kSurely, 1)) << text;
  // A line that begins like the first element's may begin elsewhere, too.
  const std::optional<std::string> byLines = DescribeDocument(text, json::Cutting::kByLines, 1);
  if (byLines || text.find('\n') == std::string::npos) {
    EXPECT_EQ(whole, byLines) << text;
  }
  if (!whole) return parsed.has_value() ? Outcome::kLeftToParse : Outcome::kRefused;
  EXPECT_TRUE(parsed.has_value()) << text;
  EXPECT_EQ(*whole, DescribeParsed(parsed)) << text;
  return Outcome::kRead;
}

const std::vector<std::string> kSoundTexts{
    "{}",
    "{ } ",
    "\xEF\xBB\xBF{\"a\": 1}",
    "\xEF\xBB\xBF{\"list\": [1, 2]}",
    R"({"a": "x", "b": [1, "y", {"a": null}], "": true})",
    R"({"list": [{"a": "x", "b": ["p", "q"]}, {"b": [[], {}]}, 7, "t", null]})",
    R"({"list": [], "a": 18446744073709551615, "b": -1})",
    R"({"list": [ ], "a": 1})",
    R"({"list": 5, "a": 1.0, "b": 1e5})",
    R"({"list": {"list": [1]}, "a": "x"})",
    R"({"a": {"list": [1, 2]}, "list": [3, 4]})",
    R"({"a": "\"list\": [", "list": ["]", "}", ",", "\\", "\\\"]", [1, 2]], "b": "]"})",
    "{\"list\": [\n{\"a\": \"x\"},\n{\"a\": [1,\n2]},\n{\"b\": [{\"a\": 1},\n{\"a\": 2}]}\n], \"b\": 1}",
    "{\"list\": [\n  {\"a\": \"x\"},\n  {\"b\": \"},\\n  {\"}\n], \"b\": [\n  {},\n  {}]}",
    "{\"b\": [\n{},\n{}], \"list\": [\n{\"a\": \"x\"},\n{\"a\": \"y\"},\n{}], \"a\": [{}]}",
    "{\"list\" :\t[\r\n{\"a\": {\"b\": {}},\r\n\"b\": 1} ,\r\n{}]\r\n, \"a\": 5}",
    "{\"a\": \"\xC3\xA9\xE2\x82\xAC\", \"b\": \"a \\\" b\"}",
    R"({"list": [{"a": "x", "a": "y", "b": {"a": {"b": [1, [2, [3]]]}}}]})",
};

const std::vector<std::string> kTextsForParse{
    "[1, \"a\", {}]",
    "\"a\"",
    "-5",
    "null",
    R"({"list": [1], "a": 1, "list": [2, 3], "a": "later"})",
    R"({"list": [1], "list": "later"})",
    R"({"list": "earlier", "list": [1]})",
    R"({"lis\u0074": [1], "a": 1})",
    R"({"a\\": 1, "list": [1]})",
    R"({"list": [1, 18446744073709551616]})",
    R"({"list": [1], "a": -9223372036854775809})",
};

TEST(JsonView, BothFormsAreReadAlike) {
  for (const std::string& text : kSoundTexts) EXPECT_EQ(ExpectTheSame(text), Outcome::kRead) << text;
}

TEST(JsonView, ElementsOnLinesOfTheirOwnAreCutThere) {
  for (const char* const text :
       {"{\"list\": [\n  {\"a\": \"x\"},\n  {\"a\": [{},\n    {}]},\n  {}\n], \"b\": [{},\n  7]}",
        "{\"list\": [\r\n{\"a\": \"x\"},\r\n{},\r\n{}]}"}) {
    EXPECT_EQ(DescribeDocument(text, json::Cutting::kByLines, 1), DescribeParsed(json::Parse(text))) << text;
  }
}

TEST(JsonView, WhatIsCutInAWrongPlaceIsLeft) {
  for (const char* const text : {"{\"list\": [\n{\"a\": [{},\n{\"a\": \"y\"}]},\n{}\n]}",
                                 "{\"list\": [\n{},\n{}], \"b\": [\n{},\n{}]}"}) {
    EXPECT_EQ(DescribeDocument(text, json::Cutting::kByLines, 1), std::nullopt) << text;
    EXPECT_EQ(DescribeDocument(text, json::Cutting::kSurely, 1), DescribeParsed(json::Parse(text))) << text;
  }
}

TEST(JsonView, ADocumentIsReadByThreads) {
  std::string text = "{\"list\": [{\"a\": \"0\"}";
  for (int index = 1; index < 1'000; ++index) text += ",\n{\"a\": \"" + std::to_string(index) + "\"}";
  text += "]}";
  const json::Document document(text, "list", json::Cutting::kSurely, 500);
  const std::string expected = DescribeParsed(json::Parse(text));
  std::array<std::optional<std::string>, 4> descriptions;
  std::vector<std::thread> threads;
  for (auto& description : descriptions)
    threads.emplace_back([&] { description = DescribeDocument(document); });
  for (std::thread& thread : threads) thread.join();
  for (const auto& description : descriptions) EXPECT_EQ(description, expected);
}

TEST(JsonView, WhatIsUnclearIsLeftToParse) {
  for (const std::string& text : kTextsForParse)
    EXPECT_EQ(ExpectTheSame(text), Outcome::kLeftToParse) << text;
}

TEST(JsonView, WhatParseRefusesIsRefused) {
  for (const char* const text : {"",
                                 " ",
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
                                 "{\"a\"b:1}",
                                 "{\"list\":[,]}",
                                 "{\"list\":[1,,2]}",
                                 "{\"list\":[1,\n,2]}",
                                 "{\"list\":[1}",
                                 "{\"list\":{1]}",
                                 "{\"list\":[1]]}",
                                 "{\"list\":[[1],2]",
                                 "{\"list\":[1],}",
                                 "{\"list\":[1]\"a\":1}",
                                 "{\"list\":[\n{\"a\":1},\n{\"a\":},\n{}]}",
                                 "{\"list\":[\n{},\n{\"a\":[{},\n{}},\n{}]]}",
                                 "{\"list\":[1,\"]}"}) {
    EXPECT_EQ(ExpectTheSame(text), Outcome::kRefused) << text;
  }
}

TEST(JsonView, ANullCharacterEndsNothing) {
  using namespace std::string_literals;
  for (const std::string& text :
       {"{\"list\":[1\0]}"s, "{\"list\":[1,\0 2]}"s, "{\"list\":[\"\0\"]}"s, "{\"list\":[\"a\"\0]}"s,
        "{\"list\":[1]\0}"s, "{\"list\":[1]}\0"s, "{\"a\":1}\0{\"list\":[]}"s}) {
    EXPECT_EQ(ExpectTheSame(text), Outcome::kRefused) << text;
  }
}

TEST(JsonView, TheDepthIsBounded) {
  for (const std::string& inside : {std::string(), std::string("1")}) {
    for (const std::string key : {"a", "list"}) {
      for (const std::size_t depth : {100, 254, 255, 256, 257, 258, 2000}) {
        const std::string text =
            "{\"" + key + "\":" + std::string(depth - 1, '[') + inside + std::string(depth - 1, ']') + "}";
        const Outcome outcome = ExpectTheSame(text);
        EXPECT_EQ(outcome == Outcome::kRefused, depth > 256) << key << depth;
        EXPECT_TRUE(outcome == Outcome::kRead || depth > 254) << key << depth;
      }
    }
  }
}

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
              {"{\"list\":[0,1],\"a\":[", "0,", "0]}", 2'097'146}};
  const auto canBeRead = [](const std::string& text) {
    const json::Document document(text, "list", json::Cutting::kByLines);
    if (!document.Root().IsThere()) return false;
    try {
      document.VisitElements([](const View&) {});
    } catch (const json::LeftToParse&) {
      return false;
    }
    return true;
  };
  for (const auto& row : rows) {
    const std::string most = row.mBegin + Repeated(row.mRepeated, row.mMost) + row.mEnd;
    const std::string tooMany = row.mBegin + Repeated(row.mRepeated, row.mMost + 1) + row.mEnd;
    EXPECT_TRUE(canBeRead(most)) << row.mBegin;
    EXPECT_TRUE(json::Parse(most).has_value()) << row.mBegin;
    EXPECT_FALSE(canBeRead(tooMany)) << row.mBegin;
    EXPECT_FALSE(json::Parse(tooMany).has_value()) << row.mBegin;
  }
}

TEST(JsonView, WhatIsParsedAtOnceIsBounded) {
  const std::string longText(33'554'432 - 8, 'x');
  const std::string around = "{\"a\":\"" + longText + "\"}";
  EXPECT_TRUE(json::Document(around, "list", json::Cutting::kSurely).Root().IsThere());
  EXPECT_FALSE(json::Document(around + ' ', "list", json::Cutting::kSurely).Root().IsThere());
  // Pieces may be longer together.
  const std::string inside = "{\"list\":[\"" + longText + "\",\"" + longText.substr(64) + "\"]}";
  std::size_t count = 0;
  json::Document(inside, "list", json::Cutting::kSurely).VisitElements([&](const View&) { ++count; });
  EXPECT_EQ(count, 2u);
  const json::Document one("{\"list\":[\"" + longText + "0123456789\"]}", "list", json::Cutting::kSurely);
  EXPECT_THROW(one.VisitElements([](const View&) {}), json::LeftToParse);
}

TEST(JsonView, WhatAVisitorThrowsComesThrough) {
  json::Document document(R"({"list": [1, 2, 3]})", "list", json::Cutting::kSurely, 1);
  std::size_t count = 0;
  const auto visit = [&](const View&) {
    if (++count == 2) throw std::out_of_range("enough");
  };
  EXPECT_THROW(document.VisitElements(visit), std::out_of_range);
  EXPECT_EQ(count, 2u);
  document.VisitElements([&](const View&) { ++count; });
  EXPECT_EQ(count, 5u) << "it can be visited again";
  EXPECT_EQ(document.TakeText(), R"({"list": [1, 2, 3]})");
}

TEST(JsonView, DamagedTextsAreReadAlike) {
  std::mt19937 random(20'000);
  const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
  const std::string characters = "{}[]:,\"\\ 01-+.eatlnu\n\t\x7F\xC3\xA9\xFF";
  std::array<int, 3> outcomes{};
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
    ++outcomes[static_cast<std::size_t>(ExpectTheSame(text))];
    if (HasFailure()) return;
  }
  EXPECT_GT(outcomes[0], 1'000) << "read";
  EXPECT_GT(outcomes[1], 1'000) << "refused";
  EXPECT_LT(outcomes[2], 100) << "left to Parse";
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

}  // namespace
