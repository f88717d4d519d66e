// Matching on several threads at once, for tools that judge many machines.
//
//   std::thread worker([&] {
//     const SeparateMatching separate;
//     Guid matchID;
//     const std::vector<SCRIssue> issues = blocklist.MatchToOSComponents(registry, matchID);
//   });
#pragma once

#include <memory>

#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

struct SeparateState;

/// Usually one thread at a time may match in a process, because matches share what file rules found, the two
/// force switches, and what expressions may still cost. While this lives, the thread that made it has all of
/// these for itself, as they are at the start of a process, and so may match beside other threads. What it
/// found is forgotten at the end. The rules and registries that threads share must not change meanwhile;
/// `SCRBlocklist::NeedsRematch` stays a matter of one thread. To be destroyed on its own thread, the last
/// made first.
class QELSCR_EXPORT SeparateMatching {
 public:
  SeparateMatching();
  ~SeparateMatching();
  SeparateMatching(const SeparateMatching&) = delete;
  SeparateMatching& operator=(const SeparateMatching&) = delete;

 private:
  std::unique_ptr<SeparateState> mState;
  SeparateState* mBefore;
};

}  // namespace qelsystemcompatibilityreport
