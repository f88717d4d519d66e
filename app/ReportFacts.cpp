#include "app/ReportFacts.h"

#include <cstdint>
#include <exception>
#include <set>
#include <string_view>
#include <utility>

#include "app/InputFile.h"
#include "app/Output.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"
#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace app {

namespace json = qelcore::json;
using qelcore::utility::ComponentTypeToString;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::ResolutionLogger;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;

namespace {

constexpr std::pair<SCRRuleErrorLevel, const char*> kRememberedKeys[] = {
    {SCRRuleErrorLevel::INFO, "info_matches"},
    {SCRRuleErrorLevel::WARN, "warn_matches"},
    {SCRRuleErrorLevel::ERROR, "error_matches"},
    {SCRRuleErrorLevel::FATAL, "fatal_matches"},
};

/// The remembered state; an empty one where the report starts afresh.
json::Dictionary ReadRememberedState() {
  const qelcore::filesupport::File file(qelcore::filesupport::Dir::PrefDir(), u"SCRPriorState.json");
  if (!file.Exists()) return {};
  try {
    std::any value = json::Parse(qelcore::filesupport::IPlatformByteStream(file).ReadAll());
    auto* const state = std::any_cast<json::Dictionary>(&value);
    return state == nullptr ? json::Dictionary() : std::move(*state);
  } catch (const std::exception&) {
    // The report says so itself.
    return {};
  }
}

bool IsBlocklist(std::string_view path) {
  const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
  return name.starts_with("blocklist.") && name.ends_with(".json");
}

std::string LevelOf(SCRRuleErrorLevel level) {
  return SCRRule::ErrorLevelToString(level);
}

/// What a component and an issue have in common.
template <typename Described>
json::Dictionary Describe(const Described& described) {
  json::Dictionary object;
  json::Set(object, "type", ComponentTypeToString(described.GetType()));
  json::Set(object, "name", described.GetName());
  if (described.GetType() == OSComponentType::kProperty) {
    json::Set(object, "value", described.GetPropertyValue());
  } else {
    json::Set(object, "version", described.GetVersion().ToString());
  }
  return object;
}

/// What an issue is in view of what was remembered.
struct Resolution {
  std::set<std::pair<SCRRuleErrorLevel, std::string>> mNew;
  json::Array mResolved;
};

json::Dictionary ChangedSettings() {
  json::Dictionary settings;
  for (const auto& setting : qelsystemcompatibilityreport::kAllDebugSettings) {
    const std::string value =
        qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue);
    if (value != setting.mDefaultValue) json::Set(settings, setting.mKey, value);
  }
  return settings;
}

json::Array WriteComponents(const OSComponentRegistry& registry, const std::vector<SCRIssue>& issues) {
  json::Array components;
  for (const auto& component : registry.GetAllComponents()) {
    json::Array numbers;
    for (std::size_t index = 0; index < issues.size(); ++index) {
      if (issues[index].IsOSComponent(*component)) numbers.emplace_back(static_cast<std::int64_t>(index));
    }
    json::Dictionary object = Describe(*component);
    json::Set(object, "issues", std::move(numbers));
    components.emplace_back(std::move(object));
  }
  return components;
}

json::Array WriteIssues(const std::vector<SCRIssue>& issues, const Resolution& resolution) {
  json::Array array;
  for (const SCRIssue& issue : issues) {
    json::Dictionary object = Describe(issue);
    json::Set(object, "level", LevelOf(issue.GetErrorLevel()));
    json::Set(object, "id", issue.GetID());
    json::Set(object, "info_message", issue.GetInfoMessage());
    json::Set(object, "info_url", issue.GetInfoURL());
    const bool isNew = resolution.mNew.contains({issue.GetErrorLevel(), issue.GetID()});
    json::Set(object, "state", std::string(isNew ? "new" : "ongoing"));
    array.emplace_back(std::move(object));
  }
  return array;
}

}  // namespace

ReportFacts::ReportFacts() {
  const json::Dictionary state = ReadRememberedState();
  for (const auto& [level, key] : kRememberedKeys) {
    try {
      mRemembered[level] = json::FindTexts(state, key).value_or(IDs());
    } catch (const json::TypeError&) {
      // A state with a wrong type is not used at all.
      mRemembered.clear();
      break;
    }
  }
  qelcore::host::SetFileOperationHook(
      [this](qelcore::host::FileOperation operation, const std::string& path) {
        if (operation == qelcore::host::FileOperation::kOpenForReading && IsBlocklist(path))
          mBlocklistPath = path;
      });
}

ReportFacts::~ReportFacts() {
  qelcore::host::SetFileOperationHook({});
}

std::string ReportFacts::WriteJSON() const {
  // The report's own: a second call in a process hands the same snapshot out.
  const auto registry = OSComponentRegistry::Get(false);
  if (!registry) throw UserError("this machine's components cannot be read; --trace 1 tells why");
  const std::string path = mBlocklistPath;
  json::Dictionary document;
  json::Set(document, "report_version", std::int64_t{1});
  json::Set(document, "blocklist", path.empty() ? std::any(nullptr) : std::any(path));

  std::vector<SCRIssue> issues;
  Resolution resolution;
  if (!path.empty()) {
    const SCRBlocklist blocklist(ReadInputFile(path));
    qelcore::Guid match;
    issues = blocklist.MatchToOSComponents(*registry, match);
    json::Set(document, "match_id", match.AsUTF8String());
    json::Set(document, "second_warning", blocklist.GetSecondWarning());
    const ResolutionLogger logger(
        [&](const SCRIssue& issue) { resolution.mNew.emplace(issue.GetErrorLevel(), issue.GetID()); },
        [](const SCRIssue&) {},
        [&](SCRRuleErrorLevel level, const std::string& id) {
          json::Dictionary object;
          json::Set(object, "level", LevelOf(level));
          json::Set(object, "id", id);
          resolution.mResolved.emplace_back(std::move(object));
        });
    for (const auto& [level, key] : kRememberedKeys) {
      const auto found = mRemembered.find(level);
      IDs remembered = found == mRemembered.end() ? IDs() : found->second;
      static_cast<void>(ResolveIssuesOfErrorLevel(level, issues, remembered, logger));
    }
  }
  json::Set(document, "settings", ChangedSettings());
  json::Set(document, "components", WriteComponents(*registry, issues));
  json::Set(document, "issues", WriteIssues(issues, resolution));
  json::Set(document, "resolved", std::move(resolution.mResolved));
  return json::Serialise(document) + "\n";
}

}  // namespace app
