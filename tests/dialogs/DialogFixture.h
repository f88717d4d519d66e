// What the tests of the report dialog have in common: issues of every level, and a toolkit that records.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/dialogs/ReportDialog.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"
#include "tests/report/ReportSupport.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace testsupport {

class DialogFixture : public ::testing::Test {
 protected:
  DialogFixture() {
    qelcore::host::SetBrowser([this](const std::string& url) {
      mOpened.push_back(url);
      return mBrowserOpens;
    });
  }
  ~DialogFixture() override { qelcore::host::SetBrowser({}); }

  /// An issue on a video card.
  [[nodiscard]] static qelsystemcompatibilityreport::SCRIssue VideoIssue(
      const std::string& level, const std::string& url = "https://example.com/a",
      const std::string& message = "Update it.") {
    return Issue(Component(qelcore::utility::OSComponentType::kVideo, "Card", "1.2.3.4"),
                 RuleText("Video", "Card", level, message, url));
  }

  /// Shows the issues while `whileUp` runs.
  void Show(std::vector<qelsystemcompatibilityreport::SCRIssue> issues,
            std::function<void(RecordedDialog&)> whileUp = {}, bool blocklistIsMissing = false) {
    mToolkit.mWhileDialogIsUp = std::move(whileUp);
    qelsystemcompatibilityreport::RunReportDialog(
        SomeWindow(), u"Example", std::move(issues),
        [this](const qelcore::filesupport::File& file) { mWrite(file); }, blocklistIsMissing);
  }

  static qelsystemcompatibilityreport::ReportStatistics& Statistics() {
    return qelsystemcompatibilityreport::ReportStatistics::Instance();
  }

  TestHost mHost;
  RecordingUserInterface mToolkit;
  std::vector<std::string> mOpened;  ///< what went to the browser
  bool mBrowserOpens = true;         ///< whether the browser obeys
  /// Writes the report.
  std::function<void(const qelcore::filesupport::File&)> mWrite = [](const qelcore::filesupport::File& file) {
    qelcore::filesupport::OPlatformByteStream(file).Write("the report");
  };
};

}  // namespace testsupport
