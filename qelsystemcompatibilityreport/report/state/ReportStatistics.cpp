#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"

#include <numeric>

namespace qelsystemcompatibilityreport {

std::uint64_t ReportStatistics::SumOfRemaining() const {
  return std::accumulate(mRemaining.begin(), mRemaining.end(), std::uint64_t{0});
}

std::uint64_t ReportStatistics::SumOfResolved() const {
  return mResolved[Index(SCRRuleErrorLevel::INFO)] + mResolved[Index(SCRRuleErrorLevel::WARN)] +
         mResolved[Index(SCRRuleErrorLevel::ERROR)] + mRemaining[Index(SCRRuleErrorLevel::FATAL)];
}

ReportStatistics& ReportStatistics::Instance() {
  static ReportStatistics statistics;
  return statistics;
}

}  // namespace qelsystemcompatibilityreport
