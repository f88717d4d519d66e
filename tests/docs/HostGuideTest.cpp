// The guide for hosts shows the example's own text, its projects build, and what it promises holds.
#include <filesystem>
#include <optional>
#include <thread>

#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/docs/ExampleHostFixture.h"
#include "tests/docs/HostGuideText.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TestHost.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using qelsystemcompatibilityreport::DownloadResult;
using testing::HasSubstr;
using testsupport::Blocks;
using testsupport::HttpAnswer;
using testsupport::Join;
using testsupport::kNobody;
using testsupport::kRoot;
using testsupport::Lines;
using testsupport::LoopbackServer;
using testsupport::ReadLines;
using testsupport::VerifiedBlocklist;

// ---- The guide's text -------------------------------------------------------------------------------------

/// Whether the block stands in the source from this line on, each line indented by the same blanks.
bool StandsAt(const Lines& block, const Lines& source, std::size_t first) {
  if (block.empty() || first + block.size() > source.size() || !source[first].ends_with(block[0]))
    return false;
  const std::string indentation(source[first].size() - block[0].size(), ' ');
  for (std::size_t i = 0; i < block.size(); ++i) {
    if (source[first + i] != (block[i].empty() ? "" : indentation + block[i])) return false;
  }
  return true;
}

TEST(HostGuide, ItsCodeIsTheExamples) {
  const Lines source = ReadLines(kRoot / "docs/examples/host/Main.cpp");
  const std::vector<Lines> blocks = Blocks("cpp");
  EXPECT_GE(blocks.size(), 6U);
  for (const Lines& block : blocks) {
    bool stands = false;
    for (std::size_t first = 0; first < source.size() && !stands; ++first) {
      stands = StandsAt(block, source, first);
    }
    EXPECT_TRUE(stands) << Join(block);
  }
}

using HostGuideScriptTest = testsupport::ExampleHostFixture;

TEST_F(HostGuideScriptTest, AScriptWritesAReport) {
  ASSERT_EQ(Blocks("lua").size(), 1U);
  mFiles.Write("nightly.lua", Join(Blocks("lua").front()));
  mFiles.Write("wrong.lua", "SystemCompatibilityReport.CreateReport()");
  const auto result = Run(kNobody, {"script=nightly.lua", "script=wrong.lua"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_THAT(mFiles.Read("nightly.txt"), HasSubstr("    Example plug-ins: 3\n"));
  EXPECT_THAT(result.mOutput, HasSubstr("Script: wrong.lua:1: "));
}

// ---- What the guide promises about states, threads and the end
// ---------------------------------------------

TEST(HostGuide, StateFiveLogsOnceAndOnlyAfterTheInitializers) {
  testsupport::TestHost host;
  const auto announce = [] { qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup); };
  announce();
  EXPECT_EQ(host.mUsageEntries.size(), 0U);
  ASSERT_TRUE(qelcore::host::BeginProcess());
  announce();
  EXPECT_EQ(host.mUsageEntries.size(), 1U);
  announce();
  EXPECT_EQ(host.mUsageEntries.size(), 1U);
}

/// A result and whether it came on the main thread.
using Told = std::pair<DownloadResult, bool>;

Told Download(const std::string& url) {
  std::optional<Told> told;
  qelsystemcompatibilityreport::DownloadBlocklistInTheBackground(
      url, 1, [&, mainThread = std::this_thread::get_id()](DownloadResult result) {
        const Told value(result, std::this_thread::get_id() == mainThread);
        qelcore::threads::AsyncCallFromMainThread([&told, value] { told = value; }, 0);
      });
  qelcore::host::RunMainThreadUntil([&] { return told.has_value(); });
  return *told;
}

TEST(HostGuide, ACallbackComesOnTheThreadThatTheTableNames) {
  const testsupport::TestHost host;
  const testsupport::EnvironmentVariable noProxy("no_proxy", "*");
  const LoopbackServer server(LoopbackServer::Answering([](const std::string& path) {
    if (path == "/good") return HttpAnswer("200 OK", VerifiedBlocklist("INFO", "new"));
    return path == "/bad" ? HttpAnswer("200 OK", "") : HttpAnswer("404 Not Found", "");
  }));
  EXPECT_EQ(Download(server.Url("/good")), Told(DownloadResult::DownloadSucceeded, false));
  EXPECT_EQ(Download(server.Url("/bad")), Told(DownloadResult::DownloadCorrupted, false));
  EXPECT_EQ(Download(server.Url("/none")), Told(DownloadResult::DownloadHttpError, false));
  EXPECT_EQ(Download("ftp://example.com"), Told(DownloadResult::DownloadRequestFailed, true));

  const auto place = host.Preferences() / "SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json";
  ASSERT_TRUE(std::filesystem::remove(place));
  std::filesystem::create_directory(place);
  EXPECT_EQ(Download(server.Url("/good")), Told(DownloadResult::DownloadNoLocation, false));

  qelsystemcompatibilityreport::EnableReports(false);
  EXPECT_EQ(Download(server.Url("/good")), Told(DownloadResult::DownloadReportsDisabled, true));
  qelcore::host::EndProcess();
}

TEST(HostGuide, ADownloadThatStillWaitsAtTheEndIsNotTold) {
  const testsupport::TestHost host;
  bool wasTold = false;
  qelsystemcompatibilityreport::DownloadBlocklistInTheBackground(kNobody, 600'000,
                                                                 [&](DownloadResult) { wasTold = true; });
  EXPECT_EQ(qelcore::host::RunDueMainThreadTasks(), 0U);
  qelcore::host::EndProcess();
  EXPECT_FALSE(wasTold);
}

}  // namespace
