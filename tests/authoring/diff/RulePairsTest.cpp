#include "authoring/diff/RulePairs.h"

#include <algorithm>
#include <random>
#include <set>

#include "tests/authoring/diff/DiffedLists.h"

namespace {

using authoring::RulePair;
using authoring::RulePairs;
using testsupport::ListOfRules;
using testsupport::ReadList;

using Indexes = std::vector<std::size_t>;

RulePairs Pair(const std::string& oldRules, const std::string& newRules) {
  return PairRules(ReadList(ListOfRules(oldRules)).mList.Rules(),
                   ReadList(ListOfRules(newRules)).mList.Rules());
}

struct Row {
  const char* mWhat;
  const char* mOld;
  const char* mNew;
  std::vector<RulePair> mPairs;
  Indexes mGone;
  Indexes mAdded;
};

constexpr const char* kA = R"({"name": "A", "type": "OS"})";
constexpr const char* kB = R"({"name": "B", "type": "OS"})";
constexpr const char* kAB = R"({"name": "A", "type": "OS"}, {"name": "B", "type": "OS"})";
constexpr const char* kBA = R"({"name": "B", "type": "OS"}, {"name": "A", "type": "OS"})";
constexpr const char* kABC =
    R"({"name": "A", "type": "OS"}, {"name": "B", "type": "OS"}, {"name": "C", "type": "OS"})";
constexpr const char* kCAB =
    R"({"name": "C", "type": "OS"}, {"name": "A", "type": "OS"}, {"name": "B", "type": "OS"})";

TEST(RulePairsTest, RulesFindTheirLike) {
  const Row rows[] = {
      {"nothing", "", "", {}, {}, {}},
      {"all new", "", kAB, {}, {}, {0, 1}},
      {"all gone", kAB, "", {}, {0, 1}, {}},
      {"equal lists", kAB, kAB, {{0, 0, false}, {1, 1, false}}, {}, {}},
      {"one gone before others", kABC, kB, {{1, 0, false}}, {0, 2}, {}},
      {"one added before others", kB, kABC, {{0, 1, false}}, {}, {0, 2}},
      {"the one that moved is moved, not those that it passed",
       kABC,
       kCAB,
       {{0, 1, false}, {1, 2, false}, {2, 0, true}},
       {},
       {}},
      {"two in the other order: one of them has moved", kAB, kBA, {{0, 1, true}, {1, 0, false}}, {}, {}},
      {"other kinds have nothing to do with each other",
       kA,
       R"({"name": "A", "type": "Video"})",
       {},
       {0},
       {0}},
      {"other names neither", kA, kB, {}, {0}, {0}},
      {"equal rules in their order",
       R"({"name": "A", "type": "OS"}, {"name": "A", "type": "OS"})",
       R"({"name": "A", "type": "OS"})",
       {{0, 0, false}},
       {1},
       {}},
      {"the equal one before the alike one",
       R"({"name": "A", "type": "OS", "versions": ["1"]}, {"name": "A", "type": "OS", "versions": ["2"]})",
       R"({"name": "A", "type": "OS", "versions": ["2"]})",
       {{1, 0, false}},
       {0},
       {}},
      {"one identifier before one that is more alike",
       R"({"name": "A", "type": "OS", "versions": ["1"], "version_mask": "1.+"},
          {"name": "A", "type": "OS", "versions": ["2"], "version_mask": "2.+"})",
       R"({"name": "A", "type": "OS", "versions": ["1"], "version_mask": "2.+"})",
       {{0, 0, false}},
       {1},
       {}},
      {"the most alike of one name",
       R"({"name": "A", "type": "OS", "versions": ["1"], "error_level": "WARN", "info_message": "One."},
          {"name": "A", "type": "OS", "versions": ["2"], "error_level": "ERROR", "info_message": "Two."})",
       R"({"name": "A", "type": "OS", "versions": ["3"], "error_level": "ERROR", "info_message": "Two."})",
       {{1, 0, false}},
       {0},
       {}},
      {"another name, when its own message tells which it is",
       R"({"name": "A", "type": "OS", "info_message": "Crashes."})",
       R"({"name": "^A.*$", "type": "OS", "info_message": "Crashes."})",
       {{0, 0, false}},
       {},
       {}},
      {"not when two have that message",
       R"({"name": "A", "type": "OS", "info_message": "Crashes."},
          {"name": "B", "type": "OS", "info_message": "Crashes."})",
       R"({"name": "C", "type": "OS", "info_message": "Crashes."})",
       {},
       {0, 1},
       {0}},
      {"another name that is near, without a message",
       R"({"name": "NVIDIA GeForce RTX 3060", "type": "Video"}, {"name": "Radeon", "type": "Video"})",
       R"({"name": "Radeon", "type": "Video"}, {"name": "^NVIDIA .*$", "type": "Video"})",
       {{0, 1, true}, {1, 0, false}},
       {},
       {}},
      {"near in its name, and other in something else",
       R"({"name": "NVIDIA GeForce RTX 3060", "type": "Video"})",
       R"({"name": "^NVIDIA .*$", "type": "Video", "error_level": "WARN"})",
       {},
       {0},
       {0}},
      {"a name that two are near to",
       R"({"name": "NVIDIA GeForce RTX 3060", "type": "Video"}, {"name": "NVIDIA GeForce RTX 3070", "type": "Video"})",
       R"({"name": "^NVIDIA .*$", "type": "Video"})",
       {},
       {0, 1},
       {0}},
      {"near names of rules that share a message",
       R"({"name": "NVIDIA A", "type": "Video", "info_message": "Crashes."},
          {"name": "Radeon B", "type": "Video", "info_message": "Crashes."})",
       R"({"name": "^Radeon.*$", "type": "Video", "info_message": "Crashes."},
          {"name": "^NVIDIA.*$", "type": "Video", "info_message": "Crashes."})",
       {{0, 1, true}, {1, 0, false}},
       {},
       {}},
      {"what is not read does not count",
       R"({"name": "A", "type": "OS", "comment": "x", "version": "1"})",
       R"({"name": "A", "type": "OS", "versions": ["1.0"], "error_level": "Info"})",
       {{0, 0, false}},
       {},
       {}},
  };
  for (const Row& row : rows) {
    const RulePairs pairs = Pair(row.mOld, row.mNew);
    EXPECT_EQ(pairs.mPairs, row.mPairs) << row.mWhat;
    EXPECT_EQ(pairs.mGone, row.mGone) << row.mWhat;
    EXPECT_EQ(pairs.mAdded, row.mAdded) << row.mWhat;
  }
}

/// Whatever is done to a list, each rule stands in the result once, and rules that are equal are paired.
TEST(RulePairsTest, EveryRuleStandsInTheResultOnce) {
  std::mt19937 random(20261121);
  const auto anyRule = [&] {
    return R"({"name": ")" + std::string(1, static_cast<char>('A' + random() % 3)) + R"(", "type": "OS", )" +
           R"("versions": [")" + std::to_string(random() % 3) + R"("], "version_mask": ")" +
           std::to_string(random() % 2 + 1) + R"(.+"})";
  };
  for (int round = 0; round < 200; ++round) {
    std::string texts[2];
    for (std::string& text : texts) {
      for (std::size_t left = random() % 12; left > 0; --left) text += (text.empty() ? "" : ", ") + anyRule();
    }
    const ReadList oldList(ListOfRules(texts[0]));
    const ReadList newList(ListOfRules(texts[1]));
    const RulePairs pairs = PairRules(oldList.mList.Rules(), newList.mList.Rules());
    std::multiset<std::size_t> oldIndexes(pairs.mGone.begin(), pairs.mGone.end());
    std::multiset<std::size_t> newIndexes(pairs.mAdded.begin(), pairs.mAdded.end());
    for (const RulePair& pair : pairs.mPairs) {
      oldIndexes.insert(pair.mOld);
      newIndexes.insert(pair.mNew);
    }
    for (const auto& [indexes, list] : {std::pair(&oldIndexes, &oldList), std::pair(&newIndexes, &newList)}) {
      ASSERT_EQ(indexes->size(), list->mList.Rules().size());
      for (std::size_t index = 0; index < indexes->size(); ++index) ASSERT_EQ(indexes->count(index), 1U);
    }
    for (const std::size_t gone : pairs.mGone) {
      for (const std::size_t added : pairs.mAdded) {
        EXPECT_NE(oldList.mList.Rules()[gone].mText, newList.mList.Rules()[added].mText)
            << texts[0] << texts[1];
        EXPECT_NE(oldList.mList.Rules()[gone].mName, newList.mList.Rules()[added].mName)
            << texts[0] << texts[1];
      }
    }
    // Those that are not moved rise in both lists.
    std::size_t next = 0;
    for (const RulePair& pair : pairs.mPairs) {
      if (pair.mIsMoved) continue;
      EXPECT_GE(pair.mNew, next);
      next = pair.mNew + 1;
    }
  }
}

/// A group that is too large for comparisons of all with all is paired in its order.
TEST(RulePairsTest, ManyRulesOfOneNameArePairedSoon) {
  const auto many = [](int offset) {
    std::string rules;
    for (int number = 0; number < 3000; ++number) {
      rules += std::string(number == 0 ? "" : ",") + R"({"name": "A", "type": "OS", "versions": [")" +
               std::to_string(number + offset) + R"("]})";
    }
    return rules;
  };
  const RulePairs pairs = Pair(many(0), many(10'000));
  ASSERT_EQ(pairs.mPairs.size(), 3000U);
  EXPECT_TRUE(std::all_of(pairs.mPairs.begin(), pairs.mPairs.end(),
                          [](const RulePair& pair) { return pair.mOld == pair.mNew && !pair.mIsMoved; }));
}

}  // namespace
