// The steps of a run one by one, each with the yardstick that stands beside it.
#pragma once

#include <any>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "benchmarks/Machine.h"
#include "platform/qelcore/Guid.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/blocklist/HitOrder.h"
#include "qelsystemcompatibilityreport/report/state/PriorState.h"

namespace benchmarks {

/// What the steps work on: a generated blocklist of so many rules and a machine of so many components, with
/// what each step leaves to the next.
class StepData {
 public:
  /// Writes the blocklist to a directory of its own, which goes with the object. One at a time.
  StepData(std::size_t rules, std::size_t components);
  ~StepData();
  StepData(const StepData&) = delete;
  StepData& operator=(const StepData&) = delete;

  std::filesystem::path mDirectory;
  std::string mBlocklistPath;
  std::string mText;
  std::any mParsed;
  qelcore::utility::OSComponentRegistry mRegistry;
  std::optional<qelsystemcompatibilityreport::SCRBlocklist> mBlocklist;
  std::vector<qelsystemcompatibilityreport::SCRRule> mRules;
  qelcore::Guid mMatchID;
  std::vector<qelsystemcompatibilityreport::Hit> mHits;  ///< of `mRules`, unsorted
  std::vector<qelsystemcompatibilityreport::SCRIssue> mIssues;
  qelsystemcompatibilityreport::SCRPriorState mState;
};

struct Step {
  const char* mName;
  bool mDependsOnComponents;
  /// Does the step once and returns something of the result, so that nothing is left out.
  std::size_t (*mRun)(StepData& data);
};

/// Steps and yardsticks, in the order of a run.
[[nodiscard]] std::span<const Step> AllSteps();

}  // namespace benchmarks
