// Everything that `scr` makes is for its user alone, whatever rights the user's shell gives to new files.
#include <sys/stat.h>

#include <algorithm>
#include <vector>

#include "tests/app/ScrTest.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testsupport::Blocklist;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::SystemRule;

/// New files are for everybody while it lives.
class GenerousRights {
 public:
  GenerousRights() : mBefore(umask(0)) {}
  ~GenerousRights() { umask(mBefore); }
  GenerousRights(const GenerousRights&) = delete;
  GenerousRights& operator=(const GenerousRights&) = delete;

 private:
  mode_t mBefore;
};

class OwnerOnlyTest : public testsupport::ScrTest {
 protected:
  /// What is there for somebody else, too, as paths below the test's directory.
  [[nodiscard]] std::vector<std::string> OpenToOthers(const std::string& place) const {
    std::vector<std::string> open;
    const auto add = [&](const std::filesystem::path& path) {
      struct stat status {};
      EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
      if ((status.st_mode & 077) != 0) open.push_back(path.lexically_relative(mFiles.Path()));
    };
    add(mFiles.Path() / place);
    if (std::filesystem::is_directory(mFiles.Path() / place)) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(mFiles.Path() / place))
        add(entry.path());
    }
    std::sort(open.begin(), open.end());
    return open;
  }

  testsupport::EnvironmentVariable mNoProxy{"no_proxy", "*"};
};

TEST_F(OwnerOnlyTest, EveryFileThatIsWritten) {
  Write("application/SystemCompatibilityReport/blocklist.en_US.json",
        Blocklist(SystemRule(R"("error_level": "WARN")")));
  const std::string script =
      Write("script.lua", "SystemCompatibilityReport.CreateReport('" + Path("by-script.txt") + "')\n");
  const LoopbackServer server(LoopbackServer::Answering(
      [&](const std::string&) { return HttpAnswer("200 OK", Blocklist(SystemRule())); }));
  const GenerousRights rights;
  const std::vector<std::vector<std::string>> lives = {
      {"report", "--output", Path("report.txt")},
      {"launch"},
      {"refresh", "--now", "--base", server.Url("")},
      {"script", script},
      {"settings", "qelsystemcompatibilityreport.download_delay_secs=1"},
      {"settings", "host.trace_level=6"},
      {"state", "quiet"},
      // A failure, which the log tells.
      {"report", "--output", Path("missing/report.txt")}};
  for (const std::vector<std::string>& arguments : lives) static_cast<void>(Scr(arguments));

  for (const char* const file :
       {"preferences/SCRPriorState.json", "preferences/SystemProperties.json",
        "preferences/DebugDatabase.json", "preferences/analytics-events.jsonl",
        "preferences/usage-statistics.jsonl", "preferences/crash-trail.json", "preferences/trace.log",
        "preferences/SystemCompatibilityReport/1.0/win/blocklist.en_US.json", "report.txt",
        "by-script.txt"}) {
    EXPECT_TRUE(Exists(file)) << file;
  }
  for (const char* const place : {"preferences", "report.txt", "by-script.txt"})
    EXPECT_EQ(OpenToOthers(place), std::vector<std::string>()) << place;
}

TEST_F(OwnerOnlyTest, AReportKeepsTheRightsThatItsUserGave) {
  const std::string report = Write("report.txt", "of yesterday");
  ASSERT_EQ(chmod(report.c_str(), 0644), 0);
  EXPECT_EQ(Scr({"report", "--output", report}).mExitCode, 0);
  EXPECT_NE(mFiles.Read("report.txt"), "of yesterday");
  EXPECT_EQ(OpenToOthers("report.txt"), std::vector<std::string>{"report.txt"});
}

}  // namespace
