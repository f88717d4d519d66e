// The example application does what the guide for hosts says.
#include "tests/docs/ExampleHostFixture.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testsupport::HttpAnswer;
using testsupport::kNobody;
using testsupport::LoopbackServer;
using testsupport::VerifiedBlocklist;
using ExampleHostTest = testsupport::ExampleHostFixture;

constexpr const char* kInstalled = "application/SystemCompatibilityReport/blocklist.en_US.json";
constexpr const char* kDownloaded = "preferences/SystemCompatibilityReport/7.3/win/blocklist.en_US.json";
constexpr const char* kServerPath = "/systemcompatibilityreport/7.3/win/blocklist.en_US.json";
constexpr const char* kState = "preferences/SCRPriorState.json";

LoopbackServer::ConnectionHandler Always(const std::string& answer) {
  return LoopbackServer::Answering([answer](const std::string&) { return answer; });
}

TEST_F(ExampleHostTest, ANewListIsFetchedAndTheNextReportReadsIt) {
  mFiles.Write(kInstalled, VerifiedBlocklist("WARN", "installed"));
  const std::string fresh = VerifiedBlocklist("FATAL", "fetched");
  std::string asked;
  testsupport::ProgramResult result;
  {
    // What another process has waited for says nothing to this one's threads; the server's end does.
    const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
      asked = path;
      return HttpAnswer("200 OK", fresh);
    }));
    result = Run(server.Url(""), {"report=before.txt", "refresh", "help", "report=after.txt"});
  }
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput,
            "Report at launch: allowed\n"
            "State 4\n"
            "State 5\n"
            "Issues: 0 FATAL, 0 ERROR, 1 WARN, 0 INFO\n"
            "Issues: 0 FATAL, 0 ERROR, 1 WARN, 0 INFO\n"
            "Refresh: 0\n"
            "Issues: 0 FATAL, 0 ERROR, 1 WARN, 0 INFO\n"
            "Issues: 1 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
            "Issues: 1 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
            "State 6\n");
  EXPECT_EQ(result.mErrors, "");
  EXPECT_EQ(asked, kServerPath);
  EXPECT_EQ(mFiles.Read(kDownloaded), fresh);
  const std::string section =
      "\n"
      "____________________________________________________________________________\n"
      "\n"
      "    Example plug-ins: 3\n";
  EXPECT_THAT(mFiles.Read("before.txt"), AllOf(HasSubstr("1.\tinstalled\n"), HasSubstr(section)));
  EXPECT_THAT(mFiles.Read("after.txt"), AllOf(HasSubstr("1.\tfetched\n"), HasSubstr(section)));
  EXPECT_THAT(mFiles.Read(kState), AllOf(HasSubstr(R"("fatal_matches":["HASH:)"), Not(HasSubstr("warn"))));
  // Once by the launch run and once by the end of the start-up.
  EXPECT_EQ(CountLines("preferences/usage-statistics.jsonl"), 2);
}

TEST_F(ExampleHostTest, AServerWithoutANewListChangesNothing) {
  mFiles.Write(kInstalled, VerifiedBlocklist("ERROR", "installed"));
  const LoopbackServer server(Always(HttpAnswer("404 Not Found", VerifiedBlocklist("FATAL", "no"))));
  const auto result = Run(server.Url("/lists/"), {"refresh", "report=report.txt"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput,
            "Report at launch: allowed\n"
            "State 4\n"
            "State 5\n"
            "Issues: 0 FATAL, 1 ERROR, 0 WARN, 0 INFO\n"
            "Refresh: -3\n"
            "Issues: 0 FATAL, 1 ERROR, 0 WARN, 0 INFO\n"
            "Issues: 0 FATAL, 1 ERROR, 0 WARN, 0 INFO\n"
            "State 6\n");
  EXPECT_EQ(result.mErrors, "");
  EXPECT_FALSE(Exists(kDownloaded));
  EXPECT_THAT(mFiles.Read("report.txt"), HasSubstr("1.\tinstalled\n"));
}

TEST_F(ExampleHostTest, WithoutAnyListTheComponentsAreReportedAndNothingIsRemembered) {
  const auto result = Run(kNobody, {"help", "report=report.txt"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_EQ(result.mOutput,
            "Report at launch: allowed\n"
            "State 4\n"
            "State 5\n"
            "Issues: 0 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
            "Issues: 0 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
            "Issues: 0 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
            "State 6\n");
  EXPECT_EQ(
      result.mErrors,
      "SystemCompatibilityReport: Unable to find blocklist file, System Compatibility Report skipped.\n");
  EXPECT_THAT(mFiles.Read("report.txt"),
              AllOf(HasSubstr("[Operating System] " + std::string(testsupport::kSystemName) + " v."),
                    HasSubstr("    Example plug-ins: 3\n"), Not(HasSubstr("ISSUES:"))));
  EXPECT_FALSE(Exists(kState));
  EXPECT_EQ(CountLines("preferences/usage-statistics.jsonl"), 2);
}

TEST_F(ExampleHostTest, EveryOtherResultOfARefreshKeepsTheOldList) {
  const std::string old = VerifiedBlocklist("INFO", "old");
  const LoopbackServer corrupting(Always(HttpAnswer("200 OK", "<html>Log in</html>")));
  const LoopbackServer good(Always(HttpAnswer("200 OK", VerifiedBlocklist("FATAL", "new"))));
  const struct {
    std::string mServerRoot;
    std::vector<std::string> mCommands;
    const char* mLine;
  } rows[] = {
      {corrupting.Url(""), {"refresh"}, "Refresh: -4\n"},
      {testsupport::UrlWithoutServer(""), {"refresh"}, "Refresh: -3\n"},
      {"ftp://example.com", {"refresh"}, "Refresh: -1\n"},
      {good.Url(""), {"off", "refresh"}, "Refresh: -7\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mLine);
    mFiles.Write(kDownloaded, old);
    const auto result = Run(row.mServerRoot, row.mCommands);
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_THAT(result.mOutput, HasSubstr(row.mLine));
    EXPECT_EQ(mFiles.Read(kDownloaded), old);
  }
}

TEST_F(ExampleHostTest, AListThatCannotBeStoredIsTold) {
  std::filesystem::create_directories(mFiles.Path() / kDownloaded);
  const LoopbackServer server(Always(HttpAnswer("200 OK", VerifiedBlocklist("FATAL", "new"))));
  const auto result = Run(server.Url(""), {"refresh"});
  EXPECT_THAT(result.mOutput, HasSubstr("Refresh: -5\n"));
  EXPECT_THAT(result.mErrors, HasSubstr("Exceptions: "));
}

TEST_F(ExampleHostTest, WhereDownloadsAreOutOfTheQuestionThereIsNoURL) {
  const char* const testFile = "preferences/SystemCompatibilityReport/test/blocklist.json";
  mFiles.Write(testFile, VerifiedBlocklist("WARN", "under test"));
  const auto withTestFile = Run(kNobody, {"refresh", "report=report.txt"});
  EXPECT_THAT(withTestFile.mOutput, HasSubstr("Refresh: not possible now\n"));
  EXPECT_THAT(mFiles.Read("report.txt"), HasSubstr("1.\tunder test\n"));

  std::filesystem::remove_all(mFiles.Path() / "preferences/SystemCompatibilityReport");
  mFiles.Write("preferences/SystemCompatibilityReport", "a file in the way");
  EXPECT_THAT(Run(kNobody, {"refresh"}).mOutput, HasSubstr("Refresh: not possible now\n"));
}

TEST_F(ExampleHostTest, AReportThatCannotBeWrittenIsTracedAndRemembersNothing) {
  const LoopbackServer server(Always(HttpAnswer("200 OK", VerifiedBlocklist("WARN", "new"))));
  const auto result = Run(server.Url(""), {"refresh", "report=missing/report.txt"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_THAT(
      result.mErrors,
      AllOf(HasSubstr("Exceptions: "), HasSubstr("missing/report.txt"),
            HasSubstr("SystemCompatibilityReport: System Compatibility Report returned an error.\n")));
  EXPECT_FALSE(Exists(kState));
}

TEST_F(ExampleHostTest, AListThatCannotBeUnderstoodResolvesWhatIsKnown) {
  mFiles.Write(kInstalled, VerifiedBlocklist("WARN", "installed"));
  EXPECT_THAT(Run(kNobody, {}).mOutput, HasSubstr("1 WARN"));
  mFiles.Write(kInstalled, VerifiedBlocklist("WARN", "installed").substr(0, 100));
  const auto result = Run(kNobody, {});
  EXPECT_THAT(result.mOutput, HasSubstr("Issues: 0 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"));
  EXPECT_THAT(result.mErrors, HasSubstr("Exceptions: "));
  EXPECT_THAT(mFiles.Read(kState), Not(HasSubstr("warn_matches")));
  EXPECT_THAT(mFiles.Read("preferences/analytics-events.jsonl"), HasSubstr("\"resolved\""));
}

TEST_F(ExampleHostTest, ADamagedStateCountsAsNone) {
  mFiles.Write(kInstalled, VerifiedBlocklist("WARN", "installed"));
  static_cast<void>(Run(kNobody, {"quiet"}));
  const std::string state = mFiles.Read(kState);
  for (const std::string& damaged :
       {state.substr(0, state.size() - 1), std::string(R"({"warn_matches": 7})")}) {
    SCOPED_TRACE(damaged);
    mFiles.Write(kState, damaged);
    std::filesystem::remove(mFiles.Path() / "preferences/analytics-events.jsonl");
    const auto result = Run(kNobody, {});
    EXPECT_THAT(result.mOutput, AllOf(HasSubstr("Report at launch: allowed\n"), HasSubstr("1 WARN")));
    EXPECT_NE(result.mErrors, "");
    EXPECT_THAT(mFiles.Read("preferences/analytics-events.jsonl"), HasSubstr("\"new\""));
  }
}

TEST_F(ExampleHostTest, TheUsersChoiceHoldsForTheNextLaunch) {
  mFiles.Write(kInstalled, VerifiedBlocklist("WARN", "installed"));
  EXPECT_THAT(Run(kNobody, {"quiet"}).mOutput, HasSubstr("Report at launch: allowed\n"));
  EXPECT_THAT(Run(kNobody, {"loud"}).mOutput,
              AllOf(HasSubstr("Report at launch: not allowed\n"), HasSubstr("1 WARN")));
  EXPECT_THAT(mFiles.Read("preferences/usage-statistics.jsonl"),
              HasSubstr(R"({"key":"report_skipped_at_launch","value":true})"));
  EXPECT_THAT(Run(kNobody, {}).mOutput, HasSubstr("Report at launch: allowed\n"));
}

TEST_F(ExampleHostTest, WhileTheServiceIsOffNothingIsReportedOrCounted) {
  mFiles.Write(kInstalled, VerifiedBlocklist("WARN", "installed"));
  const auto result = Run(kNobody, {"off", "report=off.txt", "on", "report=on.txt"});
  EXPECT_THAT(result.mOutput, HasSubstr("State 5\n"
                                        "Issues: 0 FATAL, 0 ERROR, 1 WARN, 0 INFO\n"
                                        "Issues: 0 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
                                        "Issues: 0 FATAL, 0 ERROR, 0 WARN, 0 INFO\n"
                                        "Issues: 0 FATAL, 0 ERROR, 1 WARN, 0 INFO\n"));
  EXPECT_FALSE(Exists("off.txt"));
  EXPECT_TRUE(Exists("on.txt"));
}

TEST_F(ExampleHostTest, WithoutItsDirectoriesItDoesNotStart) {
  const auto result = testsupport::RunProgram(QELSCR_EXAMPLE_HOST, {Path("preferences")}, mEnvironment,
                                              mFiles.Path(), mFiles.Path());
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_EQ(result.mOutput, "");
}

TEST_F(ExampleHostTest, LibrariesThatDoNothingTakeThePlaceOfOurs) {
  mFiles.Write(kInstalled, R"({"blocklist_version": 1, "blocklist": [
      {"type": "Property", "name": "cpu.cores", "error_level": "WARN"},
      {"type": "OS", "name": ")" +
                               std::string(testsupport::kSystemName) + R"(", "error_level": "INFO"}]})");
  const std::vector<std::string> commands = {"refresh", "report=report.txt"};
  EXPECT_THAT(Run(kNobody, commands).mOutput,
              AllOf(HasSubstr("0 ERROR, 1 WARN, 1 INFO\n"), HasSubstr("Refresh: -3\n")));
  EXPECT_TRUE(Exists("preferences/analytics-events.jsonl"));
  std::filesystem::remove(mFiles.Path() / "preferences/analytics-events.jsonl");

  const auto result = Run(kNobody, commands, ProgramWithLibrariesThatDoNothing());
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_THAT(result.mOutput, AllOf(HasSubstr("0 ERROR, 0 WARN, 1 INFO\n"), HasSubstr("Refresh: -1\n")));
  EXPECT_FALSE(Exists("preferences/analytics-events.jsonl"));
  EXPECT_THAT(mFiles.Read("report.txt"), Not(HasSubstr("[Property]")));
}

}  // namespace
