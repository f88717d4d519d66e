// Names that nearly match.
#include "authoring/explain/NameNearness.h"

#include <gtest/gtest.h>

#include <optional>
#include <regex>
#include <string>

namespace {

using authoring::CountDifferences;
using authoring::NameNearness;
using authoring::RuleName;
using Kind = authoring::NameNearness::Kind;

TEST(NameNearnessTest, NearAndNotNear) {
  const struct {
    const char* mRule;
    const char* mComponent;
    std::optional<NameNearness> mNearness;
  } rows[] = {
      {"nvidia quadro", "NVIDIA Quadro", NameNearness{Kind::kCase, 0}},
      {"Miniport", "WAN Miniport (PPTP)", NameNearness{Kind::kWithin, 11}},
      {"^miniport$", "WAN Miniport (PPTP)", NameNearness{Kind::kWithin, 11}},
      {"^.*\\bQuadro P2200$", "NVIDIA Quadro P2200 Mobile", NameNearness{Kind::kWithin, 14}},
      {"Intel(R) UHD Graphics", "Intel(R) UHD Graphics 770", NameNearness{Kind::kWithin, 4}},
      {"^Intel\\(R\\) UHD Graphics$", "Intel(R) UHD Graphics 770", NameNearness{Kind::kWithin, 4}},
      {"NVIDIA GeForce RTX 3060 Laptop", "NVIDIA GeForce RTX 3060", NameNearness{Kind::kAround, 7}},
      {"NVIDIA GeFroce RTX 3060", "NVIDIA GeForce RTX 3060", NameNearness{Kind::kCharacters, 2}},
      {"abcd", "abce", NameNearness{Kind::kCharacters, 1}},
      {"abc", "abd", std::nullopt},
      {"Linux", "Windows", std::nullopt},
      // A part of two characters is in every other name.
      {"RT", "NVIDIA GeForce RTX 3060", std::nullopt},
      {"", "a", std::nullopt},
      {"a", "", std::nullopt},
      {"^.*$", "a", std::nullopt},
  };
  for (const auto& row : rows) {
    const auto nearness = RuleName(row.mRule).NearnessTo(row.mComponent);
    EXPECT_EQ(nearness, row.mNearness)
        << row.mRule << " and " << row.mComponent << ": "
        << (nearness ? static_cast<int>(nearness->mKind) * 1000 + static_cast<int>(nearness->mCharacters)
                     : -1);
  }
}

TEST(NameNearnessTest, LongNamesTakeNoTime) {
  const std::string name(100'000, 'x');
  EXPECT_FALSE(RuleName(name + "y").NearnessTo("z" + name));
  EXPECT_EQ(RuleName(name).NearnessTo(name + "z"), (NameNearness{Kind::kWithin, 1}));
}

TEST(NameNearnessTest, CountsDifferences) {
  const struct {
    const char* mLeft;
    const char* mRight;
    std::size_t mMost;
    std::optional<std::size_t> mDifferences;
  } rows[] = {
      {"", "", 0, 0},
      {"a", "a", 0, 0},
      {"a", "b", 0, std::nullopt},
      {"a", "b", 1, 1},
      {"abc", "", 3, 3},
      {"abc", "", 2, std::nullopt},
      {"kitten", "sitting", 3, 3},
      {"sitting", "kitten", 3, 3},
      {"kitten", "sitting", 2, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CountDifferences(row.mLeft, row.mRight, row.mMost), row.mDifferences)
        << row.mLeft << " and " << row.mRight << ", " << row.mMost;
  }
}

TEST(NameNearnessTest, TheAdviceMatches) {
  const struct {
    const char* mRule;
    const char* mComponent;
    const char* mAdvice;
  } rows[] = {
      {"nvidia", "NVIDIA", R"(the name is the component's whole name, "NVIDIA")"},
      {"miniport (p", "WAN Miniport (PPTP)",
       R"x(the name is the component's whole name, "WAN Miniport (PPTP)", or an expression for all of it, such as )x"
       R"x("^.*Miniport \\(P.*$")x"},
      {"Linux", "Windows", R"(the name is the component's whole name, "Windows")"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(RuleName(row.mRule).Advice(row.mComponent), row.mAdvice) << row.mRule;
  }
  EXPECT_TRUE(std::regex_match("WAN Miniport (PPTP)", std::regex("^.*Miniport \\(P.*$")));
}

}  // namespace
