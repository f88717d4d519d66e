// A blocklist from its text to the report: reading, `Verify`, hash, match, text report.
//
// What is found is compared with a second reading and matching that shares nothing with the library, as far
// as that one can be given the rules.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"
#include "tests/blocklist/SCRBlocklistTestAccess.h"
#include "tests/fuzz/support/JsonMutator.h"
#include "tests/fuzz/support/Machines.h"
#include "tests/fuzz/support/PlainReport.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"

namespace {

namespace json = qelcore::json;
using fuzz::Require;
using qelcore::Guid;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;

constexpr std::array<const char*, 6> kKinds{"OS", "Video", "Audio", "Network", "File", "Property"};

/// Two matchings of this many rules with this many components would take the naive one too long.
constexpr std::size_t kMostRulesToCompare = 64;

/// The document as it should be understood.
struct Expected {
  std::vector<testsupport::NaiveRule> mRules;
  std::array<std::string, kKinds.size()> mMessages;
  std::array<std::string, kKinds.size()> mLinks;
  std::string mSecondWarning;
};

/// Takes up what can be read, up to the first thing that cannot. Throws for that.
void Understand(const std::any& root, Expected& expected) {
  const json::Dictionary& document = json::AsDictionary(root);
  const auto version = json::FindInteger(document, "blocklist_version");
  if (!version || (*version & 0xFFFFFFFF) == 0) return;
  if (const json::Array* const rules = json::FindArray(document, "blocklist")) {
    std::vector<testsupport::NaiveRule> read(rules->size());
    for (std::size_t place = 0; place < read.size(); ++place) {
      if (!testsupport::ReadNaiveRule((*rules)[place], read[place])) throw std::runtime_error("a rule");
    }
    expected.mRules = std::move(read);
  }
  if (const json::Dictionary* const defaults = json::FindDictionary(document, "default_info")) {
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
      const json::Dictionary* const texts = json::FindDictionary(*defaults, kKinds[kind]);
      if (texts == nullptr) continue;
      if (const auto* const message = json::FindText(*texts, "info_message"))
        expected.mMessages[kind] = *message;
      if (const auto* const link = json::FindText(*texts, "info_url")) expected.mLinks[kind] = *link;
    }
  }
  if (const auto* const warning = json::FindText(document, "second_warning"))
    expected.mSecondWarning = *warning;
}

Expected Understand(const std::any& root) {
  Expected expected;
  try {
    Understand(root, expected);
  } catch (const std::runtime_error&) {
    // What was read before stays.
  }
  return expected;
}

/// Level, kind, name, version, value, message, link.
using Finding =
    std::tuple<std::string, std::string, std::string, std::string, std::string, std::string, std::string>;

std::vector<Finding> FindingsOf(const std::vector<SCRIssue>& issues) {
  std::vector<Finding> findings;
  findings.reserve(issues.size());
  for (const SCRIssue& issue : issues) {
    findings.emplace_back(SCRRule::ErrorLevelToString(issue.GetErrorLevel()),
                          qelcore::utility::ComponentTypeToString(issue.GetType()), issue.GetName(),
                          issue.GetVersion().ToString(), issue.GetPropertyValue(), issue.GetInfoMessage(),
                          issue.GetInfoURL());
  }
  std::sort(findings.begin(), findings.end());
  return findings;
}

Finding FindingOf(const testsupport::NaiveRule& rule, const OSComponent& component,
                  const Expected& expected) {
  const auto kind =
      static_cast<std::size_t>(std::find(kKinds.begin(), kKinds.end(), rule.mType) - kKinds.begin());
  std::string message = rule.mMessage;
  std::string link = rule.mLink;
  if (message.empty()) {
    message = expected.mMessages.at(kind);
    if (link.empty()) link = expected.mLinks.at(kind);
  }
  return {rule.mLevel,
          rule.mType,
          component.GetName(),
          component.GetVersion().ToString(),
          component.GetPropertyValue(),
          message,
          link};
}

/// Nothing when the naive matcher cannot be asked.
std::optional<std::vector<Finding>> FindNaively(const Expected& expected,
                                                const OSComponentRegistry& registry) {
  const bool isHarmless = expected.mRules.size() <= kMostRulesToCompare &&
                          std::all_of(expected.mRules.begin(), expected.mRules.end(), fuzz::IsHarmless);
  if (!isHarmless) return std::nullopt;
  const testsupport::NaiveMachine machine = fuzz::NaiveMachineOf(registry);
  std::vector<Finding> findings;
  for (const testsupport::NaiveRule& rule : expected.mRules) {
    for (const std::size_t place : testsupport::MatchNaively(rule, machine).mHits) {
      const auto& components = registry.GetAllComponents();
      const auto file = fuzz::MachineFiles().find(rule.mName);
      findings.push_back(FindingOf(rule,
                                   place < components.size()
                                       ? *components[place]
                                       : OSComponent(qelcore::utility::OSComponentType::kFile, file->first,
                                                     qelcore::utility::OSComponentVersion(file->second)),
                                   expected));
    }
  }
  std::sort(findings.begin(), findings.end());
  return findings;
}

Guid HashOf(const SCRBlocklist& blocklist) {
  Guid hash;
  qelcore::GetHashResult(blocklist.Hash(), hash);
  return hash;
}

std::string ReportOf(const OSComponentRegistry& registry, const std::vector<SCRIssue>& issues) {
  qelcore::UTF8StringStream stream;
  WriteTextReport(stream, registry, issues, qelcore::filesupport::File());
  return stream.Text();
}

void RequireOnlyRefusals(const std::vector<std::string>& logged) {
  for (const std::string& context : logged) {
    Require(context == "qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist" ||
                context == "qelsystemcompatibilityreport::SCRRule::FromJSON" ||
                context == "qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents" ||
                context == "qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent",
            "only what is refused is logged");
  }
}

/// The short way from the text to the rules must not be seen in anything but the time that it takes.
void CheckBothWays(const SCRBlocklist& blocklist, const std::string& text) {
  using Access = qelsystemcompatibilityreport::SCRBlocklistTestAccess;
  const std::vector<std::string> logged = fuzz::QuietHost::Instance().TakeExceptions();
  const SCRBlocklist byDictionary = Access::FromDictionary(text);
  Require(fuzz::QuietHost::Instance().TakeExceptions() == logged, "both ways log the same");
  Require(Access::AreEqual(blocklist, byDictionary), "both ways read the same");
  RequireOnlyRefusals(logged);
}

void CheckReading(const SCRBlocklist& blocklist, const Expected& expected, const std::any& root) {
  const auto isFilled = [](const std::string& text) { return !text.empty(); };
  const bool isComplete = std::all_of(expected.mMessages.begin(), expected.mMessages.end(), isFilled) &&
                          std::all_of(expected.mLinks.begin(), expected.mLinks.end(), isFilled);
  Require(blocklist.Verify() == isComplete, "a blocklist verifies when all twelve default texts are there");
  Require(blocklist.GetSecondWarning() == expected.mSecondWarning, "the second warning is the document's");
  if (!root.has_value()) return;
  const SCRBlocklist again(json::Serialise(root));
  Require(HashOf(again) == HashOf(blocklist), "the hash depends on the content alone");
  const SCRBlocklist copy = blocklist;  // NOLINT(performance-unnecessary-copy-initialization)
  Require(HashOf(copy) == HashOf(blocklist), "a copy has the same hash");
}

void CheckMatching(const SCRBlocklist& blocklist, const Expected& expected,
                   const OSComponentRegistry& registry) {
  Guid matchID;
  const std::vector<SCRIssue> issues = blocklist.MatchToOSComponents(registry, matchID);
  Require(std::is_sorted(issues.begin(), issues.end()), "issues come sorted");
  Guid secondID;
  Require(FindingsOf(blocklist.MatchToOSComponents(registry, secondID)) == FindingsOf(issues),
          "matching again finds the same");
  Require(matchID == secondID && !(matchID == Guid()), "a match has one identifier");
  Require(!blocklist.NeedsRematch(registry, matchID), "what was just matched needs no rematch");
  Require(blocklist.NeedsRematch(registry, Guid()), "what was never matched needs a rematch");
  if (const auto findings = FindNaively(expected, registry)) {
    Require(*findings == FindingsOf(issues), "the issues are those that the naive matcher finds");
  }
  const std::string report = ReportOf(registry, issues);
  Require(report == fuzz::PlainReport(registry, issues),
          "the report shows components and issues line by line");
  Require(qelcore::string::UTF16to8(qelcore::string::UTF8to16(report)) == report, "the report is UTF-8");
}

}  // namespace

std::span<const std::string_view> fuzz::JsonVocabulary() {
  static constexpr std::string_view kWords[] = {"blocklist_version",
                                                "blocklist",
                                                "default_info",
                                                "second_warning",
                                                "info_message",
                                                "info_url",
                                                "components",
                                                "name",
                                                "type",
                                                "version",
                                                "max_version",
                                                "versions",
                                                "version_mask",
                                                "version_mod",
                                                "dependencies",
                                                "error_level",
                                                "osc_version",
                                                "osblc_version",
                                                "value",
                                                "eq",
                                                "ne",
                                                "lt",
                                                "lte",
                                                "gt",
                                                "gte",
                                                "regex",
                                                "ieq",
                                                "ine",
                                                "ilt",
                                                "ilte",
                                                "igt",
                                                "igte",
                                                "OS",
                                                "Video",
                                                "Audio",
                                                "Network",
                                                "File",
                                                "Property",
                                                "INFO",
                                                "WARN",
                                                "ERROR",
                                                "FATAL",
                                                "Windows",
                                                "NVIDIA Quadro P600",
                                                "^NVIDIA .*$",
                                                "^.*\\bMiniport\\b.*$",
                                                "memory.mb",
                                                "session",
                                                "wayland",
                                                "4000",
                                                "/usr/lib/libexample.so",
                                                "C:\\old.dll",
                                                "$HOME/plug-in",
                                                "10.0.17763.1",
                                                "0.0.4.0-0.0.4.+",
                                                "-6.1.+",
                                                "0.0.+",
                                                "0.0.10.+",
                                                "",
                                                "+",
                                                "-",
                                                "(",
                                                ")",
                                                "[a-z]",
                                                "[[:alpha:]]",
                                                "{1,99}",
                                                "(?=",
                                                "(?!",
                                                "\\b",
                                                "\\1",
                                                "|",
                                                ".*",
                                                "^",
                                                "$",
                                                "\\d+"};
  return kWords;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost::Instance();
  static const qelcore::host::RecordedFilesScope files(fuzz::MachineFiles());
  static const bool isFirstRematchOver =
      SCRBlocklist("{}").NeedsRematch(OSComponentRegistry({}), Guid::CreateUnique());
  Require(isFirstRematchOver, "another match needs a rematch");
  OSComponent::EnableSupportProperties(true);
  SCRRule::ForgetFileComponents();

  const std::string text(data, data + size);
  const std::any root = json::Parse(text);
  const Expected expected = Understand(root);
  const SCRBlocklist blocklist(text);
  CheckBothWays(blocklist, text);
  CheckReading(blocklist, expected, root);
  CheckMatching(blocklist, expected, fuzz::ReadMachine(root));
  RequireOnlyRefusals(fuzz::QuietHost::Instance().TakeExceptions());
  return 0;
}
