#include "qelsystemcompatibilityreport/report/analytics/IssuesTrail.h"

#include <cstdint>
#include <string_view>

#include "platform/qelcore/CrashTrail.h"

namespace qelsystemcompatibilityreport {

namespace brindle = qelcore::debug::brindle;

namespace {

/// From this length on no further identifier is taken. The separators do not count, so a text can become a
/// little longer. That is intended.
constexpr std::size_t kLongestText = 192;

/// Stores the identifiers, joined and kept short, under the key; nothing for an empty list. Returns their
/// number.
std::size_t JoinIssueIDsForTrail(brindle::TrailDictionary& trail, std::string_view key,
                                 const std::vector<std::string>& ids) {
  if (ids.empty()) return 0;
  std::string text = "[";
  bool isFirst = true;
  for (const std::string& id : ids) {
    if (text.size() + id.size() >= kLongestText) {
      text += ",\n...";
      break;
    }
    if (!isFirst) text += ",";
    isFirst = false;
    text += "\n" + id;
  }
  trail.insert_or_assign(std::string(key), text + "\n]");
  return ids.size();
}

}  // namespace

void LeaveIssuesTrail(const SCRPriorState& state) {
  brindle::TrailDictionary trail;
  trail.insert_or_assign(std::string(brindle::kCheckpointCategory), std::string("scr-issues"));
  trail.insert_or_assign(std::string(brindle::kCheckpointLevel),
                         std::string(brindle::kCheckpointLevel_Warning));
  const std::size_t count = JoinIssueIDsForTrail(trail, "info_issues", state.mInfoMatches) +
                            JoinIssueIDsForTrail(trail, "warn_issues", state.mWarnMatches) +
                            JoinIssueIDsForTrail(trail, "error_issues", state.mErrorMatches) +
                            JoinIssueIDsForTrail(trail, "fatal_issues", state.mFatalMatches);
  if (count > 0) {
    trail.insert_or_assign("dialog_skipped", !state.mShowIssuesAtStartup);
    brindle::LeaveTrail(trail, {});
  }
  brindle::TrailMarker(qelcore::ImmutableString("scr_issue_count"), std::to_string(count));
}

}  // namespace qelsystemcompatibilityreport
