// The blocklists that ship have nothing wrong with them, and every rule shows what it hits and what it
// misses.
#include <gtest/gtest.h>

#include "authoring/json/JsonTree.h"
#include "tests/authoring/Lists.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

constexpr const char* kLanguages[] = {"en_US", "de_DE", "ja_JP"};

std::string PathOf(const std::string& language) {
  return std::string(QELSCR_SOURCE_DIR) + "/data/SystemCompatibilityReport/blocklist." + language + ".json";
}

TEST(ShippedListsTest, HaveNoFindings) {
  std::vector<authoring::InputText> files;
  for (const char* const language : kLanguages) {
    files.push_back({PathOf(language), testsupport::ReadWholeFile(PathOf(language))});
  }
  const authoring::Findings findings = authoring::Lint(files);
  EXPECT_EQ(testsupport::CodesAndPlaces(findings), std::vector<std::string>())
      << (findings.empty() ? "" : findings.front().mFile + ": " + findings.front().mWhat);
}

TEST(ShippedListsTest, EveryRuleHasExamplesOfBothKinds) {
  for (const char* const language : kLanguages) {
    const authoring::JsonNode root = authoring::ReadJsonTree(testsupport::ReadWholeFile(PathOf(language)));
    const authoring::JsonNode* const rules = root.Find("blocklist");
    ASSERT_NE(rules, nullptr);
    EXPECT_GE(rules->mElements.size(), 90U);
    for (const authoring::JsonNode& rule : rules->mElements) {
      const authoring::JsonNode* const examples = rule.Find("examples");
      ASSERT_NE(examples, nullptr) << language << ": " << *rule.FindText("name");
      for (const char* const kind : {"hits", "misses"}) {
        const authoring::JsonNode* const list = examples->Find(kind);
        EXPECT_TRUE(list != nullptr && !list->mElements.empty())
            << language << ": " << *rule.FindText("name");
      }
    }
  }
}

/// Turned round, every single one is told of: they are really run.
TEST(ShippedListsTest, EveryExampleIsRun) {
  std::string text = testsupport::ReadWholeFile(PathOf("en_US"));
  const authoring::JsonNode root = authoring::ReadJsonTree(text);
  std::size_t count = 0;
  for (const authoring::JsonNode& rule : root.Find("blocklist")->mElements) {
    for (const char* const kind : {"hits", "misses"})
      count += rule.Find("examples")->Find(kind)->mElements.size();
  }
  const auto replaceAll = [&](const std::string& from, const std::string& to) {
    for (std::size_t place = 0; (place = text.find(from, place)) != std::string::npos; place += to.size()) {
      text.replace(place, from.size(), to);
    }
  };
  replaceAll("\"hits\": [", "\"former\": [");
  replaceAll("\"misses\": [", "\"hits\": [");
  replaceAll("\"former\": [", "\"misses\": [");
  EXPECT_EQ(testsupport::LintText(text).size(), count);
}

}  // namespace
