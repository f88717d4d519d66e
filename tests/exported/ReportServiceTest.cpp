// The report service as a host sees it, through the shared library.
#include <gmock/gmock.h>

#include <filesystem>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/TextReport.h"
#include "tests/support/TestHost.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponentType;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kBlocklist =
    R"({"blocklist_version":1,"blocklist":[)"
    R"({"type":"Video","name":"Card","version":"0.0.4.0","max_version":"0.0.4.+","version_mask":"0.0.+",)"
    R"("version_mod":"0.0.10.+","error_level":"ERROR","info_message":"It hangs.","info_url":"https://example.com/"},)"
    R"({"type":"OS","name":"Example.*","error_level":"WARN"},)"
    R"({"type":"Property","name":"memory.mb","ilt":"8192","error_level":"INFO","info_message":"Too little."},)"
    R"({"type":"Audio","name":"Card","error_level":"FATAL","info_message":"Never found."}],)"
    R"("default_info":{"OS":{"info_message":"It is old.","info_url":"https://example.com/os"}}})";

class ReportServiceTest : public testing::Test {
 protected:
  ReportServiceTest() {
    mHost.SetComponents({testsupport::Component(OSComponentType::kOS, "Example OS", "10.0"),
                         testsupport::Component(OSComponentType::kVideo, "Card", "24.21.14.1195"),
                         testsupport::Property("memory.mb", "4096")});
    qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
  }
  ~ReportServiceTest() override { EnableReports(true); }

  void Install() {
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", kBlocklist);
  }

  std::string Report() {
    RunReportToFile(u"Example", qelcore::string::UTF8to16((mHost.Files().Path() / "report.txt").string()));
    return mHost.Files().Read("report.txt");
  }

  testsupport::TestHost mHost;
};

TEST_F(ReportServiceTest, AReport) {
  Install();
  EXPECT_THAT(Report(),
              AllOf(StartsWith("System Components:\n"
                               "\n"
                               "[Operating System] Example OS v.10.0.0.0\n"
                               "ISSUES:\n"
                               "1.\tIt is old.\n"
                               "\tURL: https://example.com/os\n"
                               "\tID:  HASH:"),
                    HasSubstr("\n"
                              "----------------------------------------------------------------------------\n"
                              "[Video] Card v.24.21.14.1195\n"
                              "ISSUES:\n"
                              "1.\tIt hangs.\n"
                              "\tURL: https://example.com/\n"
                              "\tID:  HASH:"),
                    HasSubstr("\n"
                              "----------------------------------------------------------------------------\n"
                              "[Property] memory.mb : 4096\n"
                              "ISSUES:\n"
                              "1.\tToo little.\n"
                              "\tID:  HASH:"),
                    HasSubstr("\n"
                              "____________________________________________________________________________\n"
                              "\n"
                              "    Debug database settings:\n")));
  EXPECT_EQ(CountInfoIncompatibilities(), 1U);
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_EQ(CountErrorIncompatibilities(), 1U);
  EXPECT_EQ(CountFatalIncompatibilities(), 0U);
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(true));
}

TEST_F(ReportServiceTest, AFileOnDisk) {
  const std::string driver = mHost.Files().Write("driver.sys", "not a program").generic_string();
  const std::string folder = mHost.Preferences().generic_string();
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json",
                      R"({"blocklist_version":1,"blocklist":[{"type":"File","name":")" + driver +
                          R"(","error_level":"ERROR","info_message":"100% <b>bad</b> %s%n {0}"},)" +
                          R"({"type":"File","name":")" + folder + R"(","error_level":"WARN"},)" +
                          R"({"type":"File","name":")" + driver + R"(.missing","error_level":"FATAL"}]})");
  EXPECT_THAT(Report(),
              AllOf(HasSubstr("\n"
                              "----------------------------------------------------------------------------\n"
                              "[File System] " +
                              driver + "\nISSUES:\n1.\t100% <b>bad</b> %s%n {0}\n\tID:  HASH:"),
                    HasSubstr("\n[File System] " + folder + "\nISSUES:\n1.\t\n\tID:  HASH:")));
  EXPECT_EQ(CountErrorIncompatibilities(), 1U);
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
  EXPECT_EQ(CountFatalIncompatibilities(), 0U);
}

TEST_F(ReportServiceTest, NothingIsCountedBeforeTheFirstRun) {
  EXPECT_EQ(CountInfoIncompatibilities(), 0U);
  EXPECT_EQ(CountWarnIncompatibilities(), 0U);
  EXPECT_EQ(CountErrorIncompatibilities(), 0U);
  EXPECT_EQ(CountFatalIncompatibilities(), 0U);
  EXPECT_TRUE(ReportsEnabled());
  EXPECT_TRUE(GetAllowDisplayReportAtStartup());
}

TEST_F(ReportServiceTest, TheSwitch) {
  Install();
  EnableReports(false);
  EXPECT_FALSE(ReportsEnabled());
  RunReportToFile(u"Example", qelcore::string::UTF8to16((mHost.Files().Path() / "report.txt").string()));
  EXPECT_FALSE(std::filesystem::exists(mHost.Files().Path() / "report.txt"));
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  EnableReports(true);
  static_cast<void>(Report());
  EXPECT_EQ(CountErrorIncompatibilities(), 1U);
  EnableReports(false);
  EXPECT_EQ(CountErrorIncompatibilities(), 0U);
}

TEST_F(ReportServiceTest, WhatIsRememberedCanBeChangedAndForgotten) {
  Install();
  static_cast<void>(Report());
  SetAllowDisplayReportAtStartup(false);
  EXPECT_FALSE(GetAllowDisplayReportAtStartup());
  EXPECT_THAT(mHost.Files().Read("preferences/SCRPriorState.json"),
              AllOf(HasSubstr(R"("error_matches":["HASH:)"), HasSubstr(R"("show_issues_at_startup":false)")));
  DeleteReportSavedState();
  EXPECT_FALSE(std::filesystem::exists(mHost.Preferences() / "SCRPriorState.json"));
  EXPECT_TRUE(GetAllowDisplayReportAtStartup());
}

TEST_F(ReportServiceTest, AHostAddsASection) {
  RegisterTextReportCallback(
      [](qelcore::UTF8StringStream& stream, qelcore::filesupport::File& target) {
        stream << "    Plug-ins: " << 3 << ", written to " << qelcore::string::UTF16to8(target.GetName())
               << '\n';
      },
      DisplayPriority::kLast);
  EXPECT_THAT(Report(),
              EndsWith("\n"
                       "____________________________________________________________________________\n"
                       "\n"
                       "    Plug-ins: 3, written to report.txt\n"));
}

TEST_F(ReportServiceTest, TheApplicationsVersionNamesTheDownloadDirectory) {
  qelcore::host::SetApplicationVersion(7, 3);
  ASSERT_TRUE(qelcore::host::BeginProcess());
  mHost.Files().Write("preferences/SystemCompatibilityReport/7.3/win/blocklist.en_US.json", kBlocklist);
  EXPECT_THAT(Report(), HasSubstr("1.\tIt hangs.\n"));
  EXPECT_FALSE(std::filesystem::exists(mHost.Preferences() / "SystemCompatibilityReport" / "-1.-1"));
}

TEST_F(ReportServiceTest, WithoutAVersionTheDownloadDirectoryIsMinusOne) {
  ASSERT_TRUE(qelcore::host::BeginProcess());
  static_cast<void>(Report());
  EXPECT_TRUE(std::filesystem::is_directory(mHost.Preferences() / "SystemCompatibilityReport/-1.-1/win"));
}

}  // namespace
