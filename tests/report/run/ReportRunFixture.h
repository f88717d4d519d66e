// What the tests of the worker have in common: a machine, a remembered state, and a record of what was shown.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/run/ReportRun.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/TestHost.h"

namespace testsupport {

class ReportRunFixture : public ::testing::Test {
 protected:
  using RunMode = qelsystemcompatibilityreport::RunMode;
  using RunResult = qelsystemcompatibilityreport::RunResult;

  ReportRunFixture() {
    using qelcore::utility::OSComponentType;
    Statistics() = {};
    mRegistry = std::make_shared<const qelcore::utility::OSComponentRegistry>(
        qelcore::utility::OSComponentRegistry::Components{
            Component(OSComponentType::kOS, "Example OS", "10.0"),
            Component(OSComponentType::kVideo, "Card", "1.2.3.4"),
            Component(OSComponentType::kAudio, "Speakers", "5.6")});
  }

  [[nodiscard]] qelsystemcompatibilityreport::RunRequest Request(RunMode mode) {
    return {.mApplicationName = u"Example",
            .mOutputPath = mOutputPath,
            .mMode = mode,
            .mRegistry = mRegistry,
            .mPresent = [this](const qelsystemcompatibilityreport::ReportPresentation& presentation) {
              mPresentations.push_back(presentation);
            }};
  }

  RunResult Run(RunMode mode, const std::string& blocklist) {
    return qelsystemcompatibilityreport::RunReport(Request(mode), blocklist, mState, mSecondWarning);
  }

  /// The identifier that a match of the blocklist with the machine gives.
  [[nodiscard]] qelcore::Guid MatchJobOf(const std::string& blocklist) const {
    qelcore::Guid job;
    static_cast<void>(
        qelsystemcompatibilityreport::SCRBlocklist(blocklist).MatchToOSComponents(*mRegistry, job));
    return job;
  }

  /// Remembers the issues of these rules, each at its own level.
  void Remember(const std::vector<std::string>& infos, const std::vector<std::string>& warnings,
                const std::vector<std::string>& errors, const std::vector<std::string>& fatals) {
    mState.mInfoMatches = IDsOf(infos);
    mState.mWarnMatches = IDsOf(warnings);
    mState.mErrorMatches = IDsOf(errors);
    mState.mFatalMatches = IDsOf(fatals);
  }

  static qelsystemcompatibilityreport::ReportStatistics& Statistics() {
    return qelsystemcompatibilityreport::ReportStatistics::Instance();
  }

  TestHost mHost;
  qelsystemcompatibilityreport::SCRPriorState mState;
  std::string mSecondWarning = "as it was";
  std::shared_ptr<const qelcore::utility::OSComponentRegistry> mRegistry;
  std::u16string mOutputPath;
  std::vector<qelsystemcompatibilityreport::ReportPresentation> mPresentations;
};

}  // namespace testsupport
