// What is new, what goes on and what is resolved since last time.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/Export.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace qelsystemcompatibilityreport {

/// Three callbacks that hear of the outcome. Each may be empty. A value.
class QELSCR_EXPORT ResolutionLogger {
 public:
  using IssueCallback = std::function<void(const SCRIssue&)>;
  using ResolvedCallback = std::function<void(SCRRuleErrorLevel level, const std::string& id)>;

  /// Hears nothing.
  ResolutionLogger();

  /// `onNew` hears of an issue whose identifier was not remembered, `onExisting` of a remembered identifier
  /// that is still present, `onResolved` of one that is gone.
  ResolutionLogger(IssueCallback onNew, IssueCallback onExisting, ResolvedCallback onResolved);

  ResolutionLogger(const ResolutionLogger&);
  ResolutionLogger& operator=(const ResolutionLogger&);
  ~ResolutionLogger();

  void LogNewIssue(const SCRIssue& issue) const;
  void LogExistingIssue(const SCRIssue& issue) const;
  void LogResolvedIssue(SCRRuleErrorLevel level, const std::string& id) const;

 private:
  IssueCallback mOnNew;
  IssueCallback mOnExisting;
  ResolvedCallback mOnResolved;
};

/// Compares the issues of one level with the identifiers remembered for it. `issues` is the whole sorted
/// result of a match; those of other levels are passed over. Afterwards `rememberedIDs` holds the identifiers
/// that are still present, in their old order, and after them the new ones in the order of the issues, each
/// once. Each identifier is reported to the logger once, with the first issue that has it. Returns whether a
/// new identifier appeared.
///
/// An identifier that is remembered twice is reported as existing and as resolved, and its second copy is
/// removed: the first has used up its issues. That is intended.
///
/// Does not throw: what a callback throws is logged, `rememberedIDs` then stays as it was, and the result is
/// false.
QELSCR_EXPORT bool ResolveIssuesOfErrorLevel(SCRRuleErrorLevel level, const std::vector<SCRIssue>& issues,
                                             std::vector<std::string>& rememberedIDs,
                                             const ResolutionLogger& logger);

}  // namespace qelsystemcompatibilityreport
