// Full and closed outputs, terminals, and files that cannot be read.
#include "tests/app/ScrTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testsupport::Blocklist;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;

class LinuxStreamsTest : public testsupport::ScrTest {};

TEST_F(LinuxStreamsTest, OutputThatCannotBeWrittenIsAnError) {
  const auto result =
      testsupport::RunProgram("/bin/sh", {"-c", std::string(QELSCR_SCR) + " state show > /dev/full"},
                              {{"HOME", Path("home")}}, mFiles.Path(), mFiles.Path());
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_NE(result.mErrors.find("standard output"), std::string::npos) << result.mErrors;
}

TEST_F(LinuxStreamsTest, AClosedOutputIsAnErrorAndNoFileReceivesWhatIsPrinted) {
  Write("application/SystemCompatibilityReport/blocklist.en_US.json", "{{{");
  const auto result = testsupport::RunProgram(
      "/bin/bash",
      {"-c", std::string(QELSCR_SCR) + " --pref-dir preferences --app-dir application launch >&-"}, {},
      mFiles.Path(), mFiles.Path());
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_NE(result.mErrors.find("standard output"), std::string::npos) << result.mErrors;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(mFiles.Path() / "preferences")) {
    if (!entry.is_regular_file()) continue;
    EXPECT_EQ(testsupport::ReadWholeFile(entry.path()).find("Known issues"), std::string::npos)
        << entry.path();
  }
}

TEST_F(LinuxStreamsTest, AWaitIsShownOnATerminal) {
  const LoopbackServer server(
      LoopbackServer::Answering([&](const std::string&) { return HttpAnswer("200 OK", Blocklist("")); }));
  // `script` runs the command on a terminal of its own.
  const auto result = testsupport::RunProgram(
      "/usr/bin/script",
      {"--quiet", "--return", "--command",
       std::string(QELSCR_SCR) + " --pref-dir " + Path("preferences") + " --app-dir " + Path("application") +
           " --set qelsystemcompatibilityreport.download_delay_secs=1 refresh --base " + server.Url(""),
       Path("typescript")},
      {}, mFiles.Path(), mFiles.Path());
  EXPECT_EQ(result.mExitCode, 0) << result.mOutput;
  EXPECT_NE(result.mOutput.find("\r\x1b[Kthe download begins in 1 s"), std::string::npos) << result.mOutput;
  EXPECT_NE(result.mOutput.find("the next report reads it"), std::string::npos) << result.mOutput;
}

/// The run's own failure is not traced, but it must not pass for a report either.
TEST_F(LinuxStreamsTest, ReportWhoseBlocklistCannotBeReadIsAnError) {
  const std::filesystem::path folder = mFiles.Path() / "application/SystemCompatibilityReport";
  std::filesystem::create_directories(folder);
  std::filesystem::create_symlink("/proc/self/mem", folder / "blocklist.en_US.json");
  ExpectError(Scr({"report"}), "blocklist.en_US.json");
}

}  // namespace
