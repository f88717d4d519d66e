// Figures about the runs of this process.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>

#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

/// What the service counts. It lives from load to unload and is never saved. Not synchronised: runs, the
/// dialog and the host's questions are on one thread.
struct ReportStatistics {
  using PerLevel = std::array<std::uint64_t, 4>;

  bool mReportPresentedAtLaunch = false;
  std::uint64_t mNumberOfTimesReportRan = 0;
  std::uint64_t mNumberOfTimesReportPresented = 0;
  /// Stays 0. It is reported all the same; that is intended.
  std::uint64_t mNumberOfTimesReportIgnored = 0;
  PerLevel mRemaining{};  ///< remembered issues of each level after the last run
  PerLevel mResolved{};   ///< by how many the level's last decrease went down; never set back
  std::uint64_t mNumberOfTimesReportSaved = 0;  ///< exports from the dialog
  /// The last known value of the remembered state's flag.
  bool mShowReportAtLaunch = true;
  bool mReportSkippedAtLaunch = false;
  std::set<std::string> mClickedURLs;  ///< links that were opened from the dialog

  [[nodiscard]] std::uint64_t& Remaining(SCRRuleErrorLevel level) { return mRemaining[Index(level)]; }
  [[nodiscard]] std::uint64_t& Resolved(SCRRuleErrorLevel level) { return mResolved[Index(level)]; }

  /// Of all four levels.
  [[nodiscard]] std::uint64_t SumOfRemaining() const;

  /// Of the resolved values of INFO, WARN and ERROR, and of what remains at FATAL. That FATAL counts with
  /// what remains is intended.
  [[nodiscard]] std::uint64_t SumOfResolved() const;

  /// The process's statistics.
  [[nodiscard]] static ReportStatistics& Instance();

 private:
  static std::size_t Index(SCRRuleErrorLevel level) { return static_cast<std::size_t>(level); }
};

}  // namespace qelsystemcompatibilityreport
