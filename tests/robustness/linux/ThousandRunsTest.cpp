// A host that runs for months: what a thousand reports leave in memory. What they lose is found by the leak
// sanitizer, which the build with sanitizers has, at the end of the process.
#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/AppOptimization.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"
#include "tests/support/network/LoopbackServer.h"

#if defined(__SANITIZE_ADDRESS__)
// The compiler has no header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // NOLINT(bugprone-reserved-identifier)
#endif

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::utility::OSComponentType;

// Every kind of rule, issues that come and go with the card's version, and a second warning.
constexpr const char* kBlocklist = R"({"blocklist_version":1,"blocklist":[
  {"type":"Video","name":"Card","version":"1.0-1.5","error_level":"ERROR","info_message":"It hangs.",
   "info_url":"https://example.com/"},
  {"type":"Video","name":"Ca.*","version":"1.5-2.0","error_level":"WARN","info_message":"It flickers."},
  {"type":"OS","name":"Exam.*","error_level":"WARN"},
  {"type":"Network","name":"Wire(less)+","error_level":"INFO"},
  {"type":"Property","name":"memory.mb","ilt":"8192","error_level":"INFO","info_message":"Too little."},
  {"type":"File","name":"$HOME","error_level":"INFO","info_message":"A home."},
  {"type":"Audio","name":"Speakers","error_level":"FATAL","info_message":"Loud.",
   "dependencies":[{"type":"OS","name":"Example OS"}]}],
 "second_warning":"Think twice.",
 "default_info":{"OS":{"info_message":"It is old.","info_url":"https://example.com/os"}}})";

std::uint64_t BytesInUse() {
#if defined(__SANITIZE_ADDRESS__)
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 figures = mallinfo2();
  return figures.uordblks + figures.hblkhd;
#endif
}

/// A host whose records go to their files.
class ThousandRunsTest : public testing::Test {
 protected:
  ThousandRunsTest() : mReport(qelcore::string::UTF8to16((mHost.Files().Path() / "report.txt").string())) {
    mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", kBlocklist);
    qelcore::host::SetDebugEntryForThisRun("qelsystemcompatibilityreport.properties", "true");
    qelcore::host::SetUsageSink({});
    qelcore::host::SetTraceSink({});
    qelappsupport::host::SetEventSink({});
    qelcore::host::SetBrowser([](const std::string&) { return true; });
    mToolkit.mSaveAsAnswer = mReport;
    mToolkit.mWhileDialogIsUp = [](testsupport::RecordedDialog& dialog) {
      for (const char16_t* const caption : {u"Info...", u"Export Report..."}) {
        for (const std::u16string& visible : dialog.VisibleButtons()) {
          if (visible != caption) continue;
          dialog.Press(caption);
          break;
        }
      }
    };
    EXPECT_TRUE(qelcore::host::BeginProcess());
    qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
  }
  ~ThousandRunsTest() override {
    qelcore::host::EndProcess();
    qelcore::host::SetBrowser({});
  }

  /// All that a host asks for, on a machine whose driver is changed with every round.
  void Run(int round) {
    mHost.SetComponents(
        {testsupport::Component(OSComponentType::kOS, "Example OS", "10.0"),
         testsupport::Component(OSComponentType::kVideo, "Card", round % 2 == 0 ? "1.2" : "1.7"),
         testsupport::Component(OSComponentType::kAudio, "Speakers", "5.6"),
         testsupport::Component(OSComponentType::kNetwork, "Wireless", "7"),
         testsupport::Property("memory.mb", "4096")});
    switch (round % 4) {
      case 0:
        RunReportForStartup(u"Example", nullptr);
        break;
      case 1:
        RunReportForHelp(u"Example", testsupport::SomeWindow());
        break;
      case 2:
        RunReportToFile(u"Example", mReport);
        break;
      default:
        qelscripting::host::RunScriptText(
            "SystemCompatibilityReport.CreateReport([[" + qelcore::string::UTF16to8(mReport) + "]])",
            "nightly");
    }
    SetAllowDisplayReportAtStartup(GetAllowDisplayReportAtStartup());
    static_cast<void>(GetDownloadBlocklistURL("https://example.com"));
    LogToAnalytics();
    RunAppOptimizer(testsupport::SomeWindow());
    if (round % 50 == 49) DeleteReportSavedState();
    ForgetRecords();
  }

  /// Fetches a blocklist in the background, as a host does, and returns how that ended.
  static DownloadResult Download(const std::string& url) {
    std::atomic<int> result = static_cast<int>(DownloadResult::DownloadRequested);
    DownloadBlocklistInTheBackground(url, 1, [&](DownloadResult downloaded) {
      result = static_cast<int>(downloaded);
      qelcore::host::WakeMainThread();
    });
    qelcore::host::RunMainThreadUntil(
        [&] { return result != static_cast<int>(DownloadResult::DownloadRequested); });
    return DownloadResult{result.load()};
  }

  testsupport::TestHost mHost;
  testsupport::RecordingUserInterface mToolkit;

 private:
  /// What this test's own host and toolkit remember is not the library's.
  void ForgetRecords() {
    mHost.mRegistryRequests = {};
    mToolkit.mErrorMessages = {};
    mToolkit.mSaveAsDialogs = {};
    mToolkit.mSaveAsParents = {};
  }

  std::u16string mReport;
};

TEST_F(ThousandRunsTest, MemoryDoesNotGrowWithThem) {
  constexpr int kWarmUp = 100;
  constexpr int kRuns = 1000;
  int round = 0;
  for (; round < kWarmUp; ++round) Run(round);
  ASSERT_EQ(mHost.mExceptionTexts, std::vector<std::string>());
  ASSERT_GT(mToolkit.mDialogsShown, 0);
  const std::uint64_t before = BytesInUse();
  for (; round < kWarmUp + kRuns; ++round) Run(round);
  const std::uint64_t after = BytesInUse();
  RecordProperty("BytesBefore", std::to_string(before));
  RecordProperty("BytesAfter", std::to_string(after));
  // The smallest thing that a run could keep is 16 bytes long, and it is told when every tenth run keeps it.
  EXPECT_LT(after, before + 16 * kRuns / 10) << before << " bytes before";
  EXPECT_EQ(CountFatalIncompatibilities(), 1U);
  EXPECT_EQ(mToolkit.mDialogsAlive, 0);
}

TEST_F(ThousandRunsTest, NorDoesItWithDownloads) {
  std::string list = kBlocklist;
  const std::string texts = R"("info_message":"m","info_url":"https://example.com/")";
  for (const char* const kind : {"Video", "Audio", "Network", "File", "Property"})
    list.insert(list.size() - 2, std::string(",\"") + kind + "\":{" + texts + "}");
  const testsupport::LoopbackServer server(
      testsupport::LoopbackServer::Answering([&](const std::string& path) {
        return path == "/list" ? testsupport::HttpAnswer("200 OK", list)
                               : testsupport::HttpAnswer("404 Not Found", "");
      }));
  constexpr int kWarmUp = 50;
  constexpr int kDownloads = 500;
  std::uint64_t before = 0;
  for (int round = 0; round < kWarmUp + kDownloads; ++round) {
    if (round == kWarmUp) before = BytesInUse();
    ASSERT_EQ(Download(server.Url("/list")), DownloadResult::DownloadSucceeded);
    ASSERT_EQ(Download(server.Url("/missing")), DownloadResult::DownloadHttpError);
  }
  // What the last transfer still holds when it tells how it ended is the allowance.
  EXPECT_LT(BytesInUse(), before + 32 * kDownloads) << before << " bytes before";
}

}  // namespace
