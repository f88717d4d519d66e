// The two switches that loosen matching, process-wide but for threads that match separately.
#pragma once

namespace qelsystemcompatibilityreport {

/// Not synchronised: set before matching starts, on the thread that matches.
struct MatchingSwitches {
  bool mForceByType = false;  ///< every component of a rule's kind is a hit
  bool mForceByName = false;  ///< the version test is skipped

  [[nodiscard]] static MatchingSwitches& Instance();
};

}  // namespace qelsystemcompatibilityreport
