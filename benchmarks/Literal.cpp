// A run as its description reads: the document as a dictionary, values copied, an expression compiled for
// every candidate whose name is not the rule's, every issue looked at for every component.
#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

#include "benchmarks/Judge.h"
#include "benchmarks/LiteralRule.h"
#include "benchmarks/LoggedExceptions.h"
#include "benchmarks/ReportTexts.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace benchmarks {

namespace json = qelcore::json;

namespace {

using State = qelcore::MixHashGuidT<qelcore::HashValueMixerState>;

struct Texts {
  std::string mMessage;
  std::string mURL;
};

struct LiteralBlocklist {
  std::array<Texts, 6> mDefaults;
  std::vector<LiteralRule> mRules;
  std::string mSecondWarning;
};

struct LiteralIssue {
  OSComponent mComponent;
  LiteralRule mRule;

  bool operator<(const LiteralIssue& other) const {
    if (mRule.GetErrorLevel() != other.mRule.GetErrorLevel()) {
      return mRule.GetErrorLevel() > other.mRule.GetErrorLevel();
    }
    if (mComponent < other.mComponent) return true;
    if (!(mComponent == other.mComponent)) return false;
    return mRule.GetInfoMessage() < other.mRule.GetInfoMessage();
  }
};

void Mix(State& state, const std::string& text) {
  qelcore::UpdateHashState(state, text.data(), text.size());
}

void Mix(State& state, const qelcore::Guid& guid) {
  qelcore::UpdateHashState(state, guid.Bytes().data(), guid.Bytes().size());
}

LiteralBlocklist ReadBlocklist(const std::string& path) {
  const qelcore::filesupport::File file(qelcore::string::UTF8to16(path));
  const std::string text = qelcore::filesupport::IPlatformByteStream(file).ReadAll();
  const std::any root = json::Parse(text);
  const json::Dictionary& document = json::AsDictionary(root);
  LiteralBlocklist blocklist;
  if (json::FindInteger(document, "blocklist_version").value_or(0) == 0) return blocklist;
  for (const std::any& element : *json::FindArray(document, "blocklist")) {
    blocklist.mRules.emplace_back(json::AsDictionary(element));
  }
  if (const json::Dictionary* const defaults = json::FindDictionary(document, "default_info")) {
    for (std::size_t kind = 0; kind < blocklist.mDefaults.size(); ++kind) {
      const json::Dictionary* const entry = json::FindDictionary(
          *defaults, ComponentTypeToString(static_cast<OSComponentType>(static_cast<int>(kind))));
      if (entry == nullptr) continue;
      if (const auto* const message = json::FindText(*entry, "info_message")) {
        blocklist.mDefaults[kind].mMessage = *message;
      }
      if (const auto* const url = json::FindText(*entry, "info_url")) blocklist.mDefaults[kind].mURL = *url;
    }
  }
  if (const std::string* const warning = json::FindText(document, "second_warning")) {
    blocklist.mSecondWarning = *warning;
  }
  return blocklist;
}

std::string IdentifyMatch(const LiteralBlocklist& blocklist, const OSComponentRegistry& registry) {
  State state;
  for (const Texts& texts : blocklist.mDefaults) {
    Mix(state, texts.mMessage);
    Mix(state, texts.mURL);
  }
  qelcore::Guid result;
  for (const LiteralRule& rule : blocklist.mRules) {
    qelcore::GetHashResult(rule.Hash(), result);
    Mix(state, result);
  }
  Mix(state, blocklist.mSecondWarning);
  Mix(state, registry.Hash());
  qelcore::GetHashResult(state, result);
  return result.AsUTF8String();
}

std::vector<LiteralIssue> Match(const LiteralBlocklist& blocklist, const OSComponentRegistry& registry) {
  std::vector<LiteralIssue> issues;
  LiteralFiles files;
  for (const LiteralRule& rule : blocklist.mRules) {
    for (const auto& component : rule.FindMatchingOSComponents(registry, files)) {
      LiteralRule copy = rule;
      const Texts& texts = blocklist.mDefaults.at(static_cast<std::size_t>(copy.GetType()));
      copy.AdoptInfoIfNeeded(texts.mMessage, texts.mURL);
      issues.push_back({*component, copy});
    }
  }
  std::sort(issues.begin(), issues.end());
  return issues;
}

void WriteIssue(std::ostream& stream, int number, const LiteralIssue& issue) {
  stream << number << ".\t" << issue.mRule.GetInfoMessage() << '\n';
  if (!issue.mRule.GetInfoURL().empty()) stream << "\t" << kURL << " " << issue.mRule.GetInfoURL() << '\n';
  if (!issue.mRule.GetID().empty()) stream << "\t" << kID << "  " << issue.mRule.GetID() << '\n';
}

std::string Report(const OSComponentRegistry& registry, const std::vector<LiteralIssue>& issues) {
  std::ostringstream stream;
  stream << kHeading;
  OSComponentType kind = OSComponentType::kOS;
  for (const auto& component : registry.GetAllComponents()) {
    if (component->GetType() != kind) {
      stream << '\n' << std::string(76, '-') << '\n';
      kind = component->GetType();
    }
    stream << '[' << LabelOf(kind) << "] " << component->GetName();
    if (kind == OSComponentType::kProperty) {
      stream << kValueSeparator << component->GetPropertyValue();
    } else {
      stream << kVersionPrefix << component->GetVersion().ToString();
    }
    stream << '\n';
    int number = 0;
    for (const LiteralIssue& issue : issues) {
      if (!(issue.mComponent == *component)) continue;
      if (number == 0) stream << kIssuesLabel;
      WriteIssue(stream, ++number, issue);
    }
  }
  bool isFirst = true;
  for (const LiteralIssue& issue : issues) {
    if (issue.mComponent.GetType() != OSComponentType::kFile) continue;
    if (std::exchange(isFirst, false)) stream << '\n' << std::string(76, '-') << '\n';
    stream << '[' << LabelOf(OSComponentType::kFile) << "] " << issue.mComponent.GetName();
    if (issue.mComponent.GetVersion()) stream << kVersionPrefix << issue.mComponent.GetVersion().ToString();
    stream << '\n' << kIssuesLabel;
    WriteIssue(stream, 1, issue);
  }
  stream << '\n' << std::string(76, '_') << "\n\n" << kDebugSettings;
  return stream.str();
}

class LiteralJudge : public Judge {
 public:
  explicit LiteralJudge(const Machine& machine)
      : mRegistry(MakeRegistry(machine)), mFiles(machine.mFileVersions) {
    OSComponent::EnableSupportProperties(true);
  }

  Verdict JudgeMachine(const std::string& blocklistPath) override {
    const LoggedExceptions logged;
    const LiteralBlocklist blocklist = ReadBlocklist(blocklistPath);
    const std::vector<LiteralIssue> issues = Match(blocklist, mRegistry);
    std::string matchID = IdentifyMatch(blocklist, mRegistry);
    return {std::move(matchID), Report(mRegistry, issues), logged.Count()};
  }

  bool IsUnchanged(const std::string& blocklistPath, const std::string& matchID) override {
    return IdentifyMatch(ReadBlocklist(blocklistPath), mRegistry) == matchID;
  }

 private:
  OSComponentRegistry mRegistry;
  qelcore::host::RecordedFilesScope mFiles;
};

}  // namespace

std::unique_ptr<Judge> MakeLiteralJudge(const Machine& machine) {
  return std::make_unique<LiteralJudge>(machine);
}

}  // namespace benchmarks
