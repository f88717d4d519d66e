// Recorded machines against real blocklists: the hits, the texts and the answers must be those that were
// worked out apart from this project. Where the folder of recordings is not there, nothing is compared.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using qelcore::Guid;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;

using VersionsByPath = std::map<std::string, std::string, std::less<>>;

constexpr std::string_view kForce = "qelsystemcompatibilityreport.force_blocklist_match";
constexpr std::string_view kForceByName = "qelsystemcompatibilityreport.force_blocklist_match_by_name";

const std::filesystem::path& Folder() {
  static const std::filesystem::path folder =
      std::filesystem::path(QELSCR_SOURCE_DIR).parent_path() / "shared" / "data";
  return folder;
}

std::string TextOr(const json::Dictionary& object, const char* key, const std::string& otherwise) {
  const std::string* const text = json::FindText(object, key);
  return text == nullptr ? otherwise : *text;
}

const json::Dictionary& Member(const json::Dictionary& object, const std::string& key) {
  const json::Dictionary* const member = json::FindDictionary(object, key);
  static const json::Dictionary nothing;
  EXPECT_NE(member, nullptr) << key;
  return member == nullptr ? nothing : *member;
}

std::size_t Number(const json::Dictionary& object, const char* key) {
  const auto number = json::FindInteger(object, key);
  EXPECT_TRUE(number) << key;
  return number ? static_cast<std::size_t>(*number) : 0;
}

/// What an issue says, for comparison: level, kind, name, version, value, message, link.
std::string Summary(const std::string& level, const OSComponent& component, const std::string& message,
                    const std::string& link) {
  return level + " | " + qelcore::utility::ComponentTypeToString(component.GetType()) + " | " +
         component.GetName() + " | " + component.GetVersion().ToString() + " | " +
         component.GetPropertyValue() + " | " + message + " | " + link;
}

std::string Summary(const SCRIssue& issue) {
  return Summary(SCRRule::ErrorLevelToString(issue.GetErrorLevel()),
                 OSComponent(issue.GetType(), issue.GetName(), issue.GetVersion(), issue.GetPropertyValue()),
                 issue.GetInfoMessage(), issue.GetInfoURL());
}

struct Machine {
  OSComponentRegistry::Components mComponents;
  VersionsByPath mFiles;

  void Read(const json::Dictionary& machine) {
    for (const std::any& component : *json::FindArray(machine, "components")) {
      mComponents.push_back(std::make_shared<OSComponent>(component));
      EXPECT_NE(mComponents.back()->GetType(), OSComponentType::kInvalid);
    }
    const json::Array* const files = json::FindArray(machine, "files");
    if (files == nullptr) return;
    for (const std::any& entry : *files) {
      const json::Dictionary& file = json::AsDictionary(entry);
      mFiles[TextOr(file, "path", "")] = TextOr(file, "version", "");
    }
  }

  /// The component of a place, or the file of a path.
  [[nodiscard]] OSComponent Find(const std::any& placeOrPath) const {
    if (const auto* const path = std::any_cast<std::string>(&placeOrPath)) {
      const auto file = mFiles.find(*path);
      EXPECT_NE(file, mFiles.end()) << *path;
      return {OSComponentType::kFile, *path,
              qelcore::utility::OSComponentVersion(file == mFiles.end() ? "" : file->second)};
    }
    return *mComponents.at(static_cast<std::size_t>(std::any_cast<std::int64_t>(placeOrPath)));
  }
};

/// A rule's texts in its issues, and its level, as the document and the expected adoption give them.
struct RuleTexts {
  std::string mKind;
  std::string mName;
  std::string mLevel;
  std::string mMessage;
  std::string mLink;
};

struct Case {
  SCRBlocklist mBlocklist{""};
  json::Dictionary mExpected;
  std::vector<RuleTexts> mRules;

  void Read(const std::string& fileName) {
    const std::string text = testsupport::ReadWholeFile(Folder() / "blocklists" / fileName);
    mBlocklist = SCRBlocklist(text);
    const std::any document = json::Parse(text);
    mExpected = json::AsDictionary(json::Parse(testsupport::ReadWholeFile(Folder() / "expected" / fileName)));
    for (const std::any& element : *json::FindArray(json::AsDictionary(document), "blocklist")) {
      const json::Dictionary& rule = json::AsDictionary(element);
      const std::string level = TextOr(rule, "error_level", "INFO");
      const bool isKnown = level == "WARN" || level == "ERROR" || level == "FATAL";
      mRules.push_back({TextOr(rule, "type", ""), TextOr(rule, "name", ""), isKnown ? level : "INFO",
                        TextOr(rule, "info_message", ""), TextOr(rule, "info_url", "")});
    }
    for (const std::any& entry : *json::FindArray(mExpected, "adopted")) {
      const auto& adopted = *std::any_cast<json::Array>(&entry);
      RuleTexts& rule = mRules.at(static_cast<std::size_t>(std::any_cast<std::int64_t>(adopted.at(0))));
      rule.mMessage = std::any_cast<std::string>(adopted.at(1));
      rule.mLink = std::any_cast<std::string>(adopted.at(2));
    }
  }

  /// The expected issues of one machine, sorted.
  [[nodiscard]] std::vector<std::string> ExpectedIssues(const json::Dictionary& ofMachine,
                                                        const Machine& machine) const {
    std::vector<std::string> issues;
    for (const auto& [level, list] : Member(ofMachine, "issues")) {
      for (const std::any& entry : *std::any_cast<json::Array>(list.get())) {
        const auto& pair = *std::any_cast<json::Array>(&entry);
        const RuleTexts& rule = mRules.at(static_cast<std::size_t>(std::any_cast<std::int64_t>(pair.at(0))));
        EXPECT_EQ(rule.mLevel, level);
        issues.push_back(Summary(level, machine.Find(pair.at(1)), rule.mMessage, rule.mLink));
      }
    }
    std::sort(issues.begin(), issues.end());
    return issues;
  }
};

class SharedDataTest : public testing::TestWithParam<const char*> {
 protected:
  ~SharedDataTest() override { OSComponent::EnableSupportProperties(false); }

  void SetUp() override {
    OSComponent::EnableSupportProperties(true);
    // The malformed expressions among the rules are logged by the thousand, which nobody reads here.
    qelcore::host::SetExceptionSink({});
    qelcore::host::SetTraceLevel(0);
    mIsThere = std::filesystem::is_directory(Folder());
    if (!mIsThere) {
      std::cout << "There are no recordings in " << Folder() << ", nothing was compared.\n";
      return;
    }
    mCase.Read(GetParam());
  }

  /// The issues in the engine's order, of a machine judged as if by a process of its own.
  std::vector<SCRIssue> Match(const Machine& machine) const {
    const qelcore::host::RecordedFilesScope files(machine.mFiles);
    SCRRule::ForgetFileComponents();
    Guid matchID;
    return mCase.mBlocklist.MatchToOSComponents(OSComponentRegistry(machine.mComponents), matchID);
  }

  std::size_t CountForced(std::string_view key, const Machine& machine) const {
    qelcore::host::SetDebugEntryForThisRun(key, "true");
    const std::size_t count = Match(machine).size();
    qelcore::host::SetDebugEntryForThisRun(key, "false");
    return count;
  }

  testsupport::TestHost mHost;
  bool mIsThere = false;
  Case mCase;
};

TEST_P(SharedDataTest, EveryMachineHasTheExpectedIssues) {
  if (!mIsThere) return;
  const json::Dictionary& machines = Member(mCase.mExpected, "machines");
  ASSERT_FALSE(machines.empty());
  for (const auto& [name, value] : machines) {
    SCOPED_TRACE(name);
    const json::Dictionary& expected = json::AsDictionary(*value);
    const std::any recording =
        json::Parse(testsupport::ReadWholeFile(Folder() / "machines" / (name + ".json")));
    Machine machine;
    machine.Read(json::AsDictionary(recording));

    const std::vector<SCRIssue> issues = Match(machine);
    EXPECT_TRUE(std::is_sorted(issues.begin(), issues.end()));
    std::vector<std::string> summaries;
    for (const SCRIssue& issue : issues) summaries.push_back(Summary(issue));
    std::sort(summaries.begin(), summaries.end());
    EXPECT_EQ(summaries, mCase.ExpectedIssues(expected, machine));

    EXPECT_EQ(CountForced(kForce, machine), Number(expected, "forced_by_type"));
    EXPECT_EQ(CountForced(kForceByName, machine), Number(expected, "forced_by_name"));
  }
}

TEST_P(SharedDataTest, TheBlocklistIsReadAsExpected) {
  if (!mIsThere) return;
  EXPECT_EQ(mCase.mBlocklist.Verify(), json::FindBool(mCase.mExpected, "verify"));
  EXPECT_EQ(mCase.mRules.size(), Number(mCase.mExpected, "rules"));

  // With one component of every kind, and every file that a rule names, a forced match shows each rule once.
  Machine machine;
  std::map<std::string, OSComponent> componentsByKind;
  for (const OSComponentType kind : {OSComponentType::kOS, OSComponentType::kVideo, OSComponentType::kAudio,
                                     OSComponentType::kNetwork, OSComponentType::kProperty}) {
    const std::string text = qelcore::utility::ComponentTypeToString(kind);
    machine.mComponents.push_back(testsupport::Component(kind, "of the kind " + text, ""));
    componentsByKind[text] = *machine.mComponents.back();
  }
  std::vector<std::string> expected;
  for (const RuleTexts& rule : mCase.mRules) {
    if (rule.mKind == "File") machine.mFiles[rule.mName] = "1.2.3.4";
    const OSComponent component =
        rule.mKind == "File"
            ? OSComponent(OSComponentType::kFile, rule.mName, qelcore::utility::OSComponentVersion("1.2.3.4"))
            : componentsByKind.at(rule.mKind);
    expected.push_back(Summary(rule.mLevel, component, rule.mMessage, rule.mLink));
  }
  qelcore::host::SetDebugEntryForThisRun(kForce, "true");
  std::vector<std::string> summaries;
  for (const SCRIssue& issue : Match(machine)) summaries.push_back(Summary(issue));
  std::sort(summaries.begin(), summaries.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(summaries, expected);
}

INSTANTIATE_TEST_SUITE_P(Blocklists, SharedDataTest,
                         testing::Values("chromium_driver_bugs.json", "chromium_software_rendering.json",
                                         "field_census.json", "mozilla_gfx_items.json"),
                         [](const auto& blocklist) {
                           const std::string name = blocklist.param;
                           return name.substr(0, name.find('.'));
                         });

}  // namespace
