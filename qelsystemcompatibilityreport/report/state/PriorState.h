// What the report remembers from one run to the next.
//
// docs/formats/remembered-state.md describes the file.
#pragma once

#include <any>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/qelcore/Guid.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

/// The remembered state. A default-constructed one is that of a user who never ran the report.
struct SCRPriorState {
  qelcore::Guid mLastMatchJob;  ///< identifier of the last match; null when nothing was ever matched
  std::vector<std::string> mInfoMatches;  ///< identifiers of the issues that it found, level by level
  std::vector<std::string> mWarnMatches;
  std::vector<std::string> mErrorMatches;
  std::vector<std::string> mFatalMatches;
  bool mShowIssuesAtStartup = true;  ///< whether a launch run may open the dialog
  std::uint32_t mDialogDisableReason =
      0;  ///< why that was turned off; 0 is none. Kept for the host, which sets it

  /// The identifiers of a level.
  [[nodiscard]] std::vector<std::string>& MatchesOfLevel(SCRRuleErrorLevel level);
  [[nodiscard]] const std::vector<std::string>& MatchesOfLevel(SCRRuleErrorLevel level) const;

  friend bool operator==(const SCRPriorState&, const SCRPriorState&) = default;
};

/// The four levels in the order in which they are worked through.
inline constexpr std::array kErrorLevels{SCRRuleErrorLevel::INFO, SCRRuleErrorLevel::WARN,
                                         SCRRuleErrorLevel::ERROR, SCRRuleErrorLevel::FATAL};

/// The state's JSON object. What is at its default is left out, but for the match job.
[[nodiscard]] std::any PriorStateToJSON(const SCRPriorState& state);

/// Reads a parsed JSON value. An absent key leaves the default. Throws when the value is no object or a key
/// has the wrong type.
[[nodiscard]] SCRPriorState PriorStateFromJSON(const std::any& json);

/// Loads "SCRPriorState.json" from the preferences directory. Returns whether a state was read. Without a
/// file, or with one that is empty or broken, which is traced or logged, `state` holds the defaults. Does not
/// throw.
bool LoadPriorStateFromPrefsDir(SCRPriorState& state);

/// Saves the state in one step: the file holds the old state or the new one, whatever happens. Returns
/// whether it was written. Does not throw: a failure is logged and leaves the old file.
bool SavePriorStateToPrefsDir(const SCRPriorState& state);

}  // namespace qelsystemcompatibilityreport
