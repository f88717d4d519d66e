// The blocklists and translations that ship.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/rules/Expression.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::ReadWholeFile;
using testsupport::TestHost;

constexpr const char* kDataDirectory = QELSCR_SOURCE_DIR "/data/";

json::Dictionary ReadDocument(const std::string& relativePath) {
  json::ParseError error;
  const std::any value = json::Parse(ReadWholeFile(kDataDirectory + relativePath), &error);
  EXPECT_TRUE(value.has_value()) << relativePath << ", line " << error.mLine << ": " << error.mMessage;
  return json::AsDictionary(value);
}

std::vector<SCRRule> ReadRules(const json::Dictionary& document) {
  std::vector<SCRRule> rules;
  for (const std::any& element : *json::FindArray(document, "blocklist")) {
    SCRRule rule;
    EXPECT_TRUE(rule.FromJSON(element)) << json::Serialise(element);
    rules.push_back(rule);
  }
  return rules;
}

void ExpectCompiles(const std::string& expression) {
  try {
    static_cast<void>(qelsystemcompatibilityreport::MatchesWhole(expression, "text"));
  } catch (const std::regex_error& error) {
    ADD_FAILURE() << expression << ": " << error.what();
  }
}

void ExpectExpressionsCompile(const SCRRule& rule) {
  const bool nameIsAnExpression =
      rule.GetType() != OSComponentType::kFile && rule.GetType() != OSComponentType::kProperty;
  if (nameIsAnExpression) ExpectCompiles(rule.GetName());
  const auto comparisons = rule.GetPropertyComparisons();
  const auto operand = comparisons.find(SCRPropertyOperator::kRegularExpression);
  if (operand != comparisons.end()) ExpectCompiles(operand->second);
  for (const SCRRule& dependency : rule.GetDependencies()) ExpectExpressionsCompile(dependency);
}

class ShippedBlocklistTest : public testing::TestWithParam<const char*> {};

TEST_P(ShippedBlocklistTest, VerifiesAndItsExpressionsCompile) {
  const TestHost host;
  const std::string path = "SystemCompatibilityReport/blocklist." + std::string(GetParam()) + ".json";
  const SCRBlocklist blocklist(ReadWholeFile(kDataDirectory + path));
  EXPECT_TRUE(blocklist.Verify());
  EXPECT_FALSE(blocklist.GetSecondWarning().empty());
  EXPECT_EQ(host.mExceptionTexts, std::vector<std::string>());
  for (const SCRRule& rule : ReadRules(ReadDocument(path))) ExpectExpressionsCompile(rule);
}

/// Everything but the texts is the same in every language, so that a machine has the same issues.
TEST_P(ShippedBlocklistTest, HasTheRulesOfTheEnglishOne) {
  const auto withoutTexts = [](const std::string& language) {
    const json::Dictionary document =
        ReadDocument("SystemCompatibilityReport/blocklist." + language + ".json");
    std::vector<std::string> rules;
    for (const std::any& element : *json::FindArray(document, "blocklist")) {
      json::Dictionary rule = json::AsDictionary(element);
      for (const char* const key : {"info_message", "info_url", "comment"}) rule.erase(key);
      rules.push_back(json::Serialise(rule));
    }
    return rules;
  };
  EXPECT_EQ(withoutTexts(GetParam()), withoutTexts("en_US"));
}

TEST_P(ShippedBlocklistTest, IsTranslatedWhole) {
  const json::Dictionary english = ReadDocument("translations/en_US.json");
  const json::Dictionary translated = ReadDocument("translations/" + std::string(GetParam()) + ".json");
  std::set<std::string> missing;
  for (const auto& [key, text] : english) {
    if (!json::Has(translated, key)) missing.insert(key);
  }
  EXPECT_EQ(missing, std::set<std::string>());
  EXPECT_EQ(translated.size(), english.size());
}

INSTANTIATE_TEST_SUITE_P(Languages, ShippedBlocklistTest, testing::Values("en_US", "de_DE", "ja_JP"),
                         [](const auto& parameters) { return std::string(parameters.param); });

TEST(ShippedRulesTest, CoverKindsLevelsAndForms) {
  const std::vector<SCRRule> rules =
      ReadRules(ReadDocument("SystemCompatibilityReport/blocklist.en_US.json"));
  EXPECT_GE(rules.size(), 30U);
  std::set<OSComponentType> kinds;
  std::set<std::string> levels;
  bool hasMask = false;
  bool hasModulus = false;
  bool hasDependency = false;
  for (const SCRRule& rule : rules) {
    kinds.insert(rule.GetType());
    levels.insert(SCRRule::ErrorLevelToString(rule.GetErrorLevel()));
    const std::string text = json::Serialise(rule.ToJSON());
    hasMask |= text.find("\"version_mask\"") != std::string::npos;
    hasModulus |= text.find("\"version_mod\"") != std::string::npos;
    hasDependency |= !rule.GetDependencies().empty();
  }
  EXPECT_EQ(kinds.size(), 6U);
  EXPECT_EQ(levels, (std::set<std::string>{"INFO", "WARN", "ERROR", "FATAL"}));
  EXPECT_TRUE(hasMask && hasModulus && hasDependency);
}

TEST(ShippedRulesTest, EveryRuleTellsItsReasonAndLinksToASafePage) {
  const json::Dictionary document = ReadDocument("SystemCompatibilityReport/blocklist.en_US.json");
  for (const std::any& element : *json::FindArray(document, "blocklist")) {
    const json::Dictionary& rule = json::AsDictionary(element);
    const std::string* const comment = json::FindText(rule, "comment");
    EXPECT_TRUE(comment != nullptr && !comment->empty()) << json::Serialise(rule);
    const std::string* const url = json::FindText(rule, "info_url");
    EXPECT_TRUE(url == nullptr || url->rfind("https://", 0) == 0) << json::Serialise(rule);
  }
}

/// A machine of today with nothing wrong must not be warned.
TEST(ShippedRulesTest, WellKeptMachinesHaveNoSeriousIssue) {
  using testsupport::Component;
  using testsupport::Property;
  TestHost host;
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  const SCRBlocklist blocklist(
      ReadWholeFile(std::string(kDataDirectory) + "SystemCompatibilityReport/blocklist.en_US.json"));
  const OSComponentRegistry::Components machines[] = {
      {Component(OSComponentType::kOS, "Windows", "10.0.26200.7171"),
       Component(OSComponentType::kVideo, "NVIDIA GeForce RTX 4070", "32.0.15.8180"),
       Component(OSComponentType::kAudio, "Speakers (Realtek(R) Audio)", "6.0.9700.1"),
       Component(OSComponentType::kNetwork, "Intel(R) Wi-Fi 6E AX211 160MHz", "23.160.0.4"),
       Property("memory.mb", "32768")},
      {Component(OSComponentType::kOS, "Debian GNU/Linux", "13"),
       Component(OSComponentType::kOS, "Linux", "6.12.57.0"),
       Component(OSComponentType::kVideo, "Intel Corporation Alder Lake-P GT2 [Iris Xe Graphics]",
                 "6.12.57.0"),
       Component(OSComponentType::kVideo, "Mesa", "25.0.7"),
       Component(OSComponentType::kAudio,
                 "Intel Corporation Alder Lake PCH-P High Definition Audio Controller", "6.12.57.0"),
       Component(OSComponentType::kNetwork, "Intel Corporation Ethernet Controller I225-V", "6.12.57.0"),
       Property("memory.mb", "15720"), Property("disk.free_gb", "210"), Property("display.server", "wayland"),
       Property("system.virtualisation", "none"), Property("system.secure_boot", "enabled")},
  };
  for (const OSComponentRegistry::Components& components : machines) {
    qelcore::Guid match;
    for (const auto& issue : blocklist.MatchToOSComponents(OSComponentRegistry(components), match)) {
      EXPECT_FALSE(issue.IsSeriousError()) << issue.GetName() << ": " << issue.GetInfoMessage();
    }
  }
}

}  // namespace
