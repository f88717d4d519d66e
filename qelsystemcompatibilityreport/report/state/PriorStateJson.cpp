// The remembered state's JSON form.
#include <string_view>
#include <utility>

#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"

namespace qelsystemcompatibilityreport {

namespace json = qelcore::json;

namespace {

constexpr std::string_view kLastMatchJob = "last_match_job";
constexpr std::string_view kShowIssuesAtStartup = "show_issues_at_startup";
constexpr std::string_view kDialogDisableReason = "dialog_disable_reason";

/// The length of an identifier's text.
constexpr std::size_t kGuidLength = 36;

std::string_view MatchesKey(SCRRuleErrorLevel level) {
  switch (level) {
    case SCRRuleErrorLevel::WARN:
      return "warn_matches";
    case SCRRuleErrorLevel::ERROR:
      return "error_matches";
    case SCRRuleErrorLevel::FATAL:
      return "fatal_matches";
    case SCRRuleErrorLevel::INFO:
      break;
  }
  return "info_matches";
}

/// A boolean, an integer, or one of the texts "true" and "false".
bool ReadLenientBool(const json::Dictionary& object, std::string_view key) {
  const std::any& value = *object.find(key)->second;
  if (const auto* const boolean = std::any_cast<bool>(&value)) return *boolean;
  if (const auto* const text = std::any_cast<std::string>(&value)) {
    if (*text == "true") return true;
    if (*text == "false") return false;
    throw json::TypeError("\"" + std::string(key) + "\" is neither \"true\" nor \"false\"");
  }
  return *json::FindInteger(object, key) != 0;
}

/// For a state and for a constant one.
template <typename State>
auto& MatchesIn(State& state, SCRRuleErrorLevel level) {
  switch (level) {
    case SCRRuleErrorLevel::WARN:
      return state.mWarnMatches;
    case SCRRuleErrorLevel::ERROR:
      return state.mErrorMatches;
    case SCRRuleErrorLevel::FATAL:
      return state.mFatalMatches;
    case SCRRuleErrorLevel::INFO:
      break;
  }
  return state.mInfoMatches;
}

}  // namespace

std::vector<std::string>& SCRPriorState::MatchesOfLevel(SCRRuleErrorLevel level) {
  return MatchesIn(*this, level);
}

const std::vector<std::string>& SCRPriorState::MatchesOfLevel(SCRRuleErrorLevel level) const {
  return MatchesIn(*this, level);
}

std::any PriorStateToJSON(const SCRPriorState& state) {
  json::Dictionary object;
  json::Set(object, kLastMatchJob, state.mLastMatchJob.AsUTF8String());
  for (const SCRRuleErrorLevel level : kErrorLevels) {
    const std::vector<std::string>& matches = state.MatchesOfLevel(level);
    if (!matches.empty()) json::Set(object, MatchesKey(level), json::Array(matches.begin(), matches.end()));
  }
  if (!state.mShowIssuesAtStartup) json::Set(object, kShowIssuesAtStartup, false);
  if (state.mDialogDisableReason != 0) {
    json::Set(object, kDialogDisableReason, std::uint64_t{state.mDialogDisableReason});
  }
  return object;
}

SCRPriorState PriorStateFromJSON(const std::any& json) {
  const json::Dictionary& object = json::AsDictionary(json);
  SCRPriorState state;
  if (const std::string* const job = json::FindText(object, kLastMatchJob)) {
    state.mLastMatchJob = qelcore::Guid::FromUTF8String(std::string_view(*job).substr(0, kGuidLength));
  }
  for (const SCRRuleErrorLevel level : kErrorLevels) {
    if (auto matches = json::FindTexts(object, MatchesKey(level))) {
      state.MatchesOfLevel(level) = std::move(*matches);
    }
  }
  if (json::Has(object, kShowIssuesAtStartup)) {
    state.mShowIssuesAtStartup = ReadLenientBool(object, kShowIssuesAtStartup);
  }
  if (const auto reason = json::FindInteger(object, kDialogDisableReason)) {
    state.mDialogDisableReason = static_cast<std::uint32_t>(*reason);
  }
  return state;
}

}  // namespace qelsystemcompatibilityreport
