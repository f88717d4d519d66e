// All that may go on at once in a host: reports on the main thread, downloads that complete on the HTTP
// library's, states that others announce, and somebody who turns the trace up and down. What the threads do
// to each other is seen by the thread sanitizer; the tests themselves see that each got its work done.
#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/report/download/BlocklistDownloadFixture.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using namespace qelsystemcompatibilityreport;
using qelcore::appstatemanager::AppState;
using testing::Each;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;

constexpr int kRounds = 20;

class ThreadsTest : public testsupport::BlocklistDownloadFixture {
 protected:
  ThreadsTest() {
    using qelcore::utility::OSComponentType;
    mHost.SetComponents({testsupport::Component(OSComponentType::kOS, "Example OS", "10.0"),
                         testsupport::Component(OSComponentType::kVideo, "Card", "1.2.3.4")});
    EXPECT_TRUE(qelcore::host::BeginProcess());
  }
  ~ThreadsTest() override { qelcore::host::EndProcess(); }

  /// A thread that does it again and again until the test ends.
  template <typename Step>
  [[nodiscard]] std::jthread Repeat(Step step) {
    return std::jthread([step](const std::stop_token& stop) {
      for (int round = 0; !stop.stop_requested(); ++round) {
        step(round);
        std::this_thread::yield();
      }
    });
  }

  [[nodiscard]] static std::string BlocklistOf(int number) {
    std::string text = GoodBlocklist();
    const std::string rule = R"({"type":"OS","name":"Exam.*","error_level":"WARN","info_message":"list )" +
                             std::to_string(number) + R"("})";
    return text.insert(text.rfind(']'), rule);
  }
};

TEST_F(ThreadsTest, ReportsWhileDownloadsCompleteAndOthersTraceAndAnnounce) {
  std::atomic<int> answered{0};
  const LoopbackServer server(LoopbackServer::Answering(
      [&](const std::string&) { return HttpAnswer("200 OK", BlocklistOf(++answered)); }));
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", BlocklistOf(0));
  const std::filesystem::path output = mHost.Files().Path() / "report.txt";

  {
    const std::jthread tracer = Repeat([](int round) {
      qelcore::host::SetTraceLevel(round % 7);
      qelcore::host::SetTraceObserver([](std::string_view, int, std::string_view) {}, round % 7);
    });
    // The end of start-up is the main thread's, or a time without a run.
    const std::jthread announcer = Repeat([](int round) {
      qelcore::host::SetAppState(round % 2 == 0 ? AppState::kStarting : AppState::kStarted);
    });
    const std::jthread optionSetter = Repeat([](int) { qelnet::host::SetOptions({}); });
    for (int round = 0; round < kRounds; ++round) {
      DownloadBlocklistInTheBackground(server.Url("/list"), 1, Callback());
      EXPECT_EQ(Advance(1), 1U);
      RunReportToFile(u"Example", qelcore::string::UTF8to16(output.string()));
      EXPECT_THAT(testsupport::ReadWholeFile(output), testing::HasSubstr("1.\tlist "));
      qelcore::host::SetAppState(AppState::kPostStartup);
      RunReportForStartup(u"Example", nullptr);
    }
    EXPECT_THAT(mResults.WaitFor(kRounds), Each(DownloadResult::DownloadSucceeded));
  }
  qelcore::host::SetTraceObserver({});
  EXPECT_EQ(mHost.mExceptionTexts, std::vector<std::string>());
  EXPECT_EQ(CountWarnIncompatibilities(), 1U);
}

TEST_F(ThreadsTest, TheHostEndsWhileDownloadsAndAnnouncementsGoOn) {
  const LoopbackServer server(
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", GoodBlocklist()); }));
  const std::jthread announcer = Repeat([](int) { qelcore::host::SetAppState(AppState::kShuttingDown); });
  for (int round = 0; round < kRounds; ++round) {
    static_cast<void>(DownloadBlocklistNow(server.Url("/list"), Callback()));
  }
  qelnet::host::Shutdown();
  // Each was told what became of it, whether or not it was still under way.
  EXPECT_EQ(mResults.Now().size(), static_cast<std::size_t>(kRounds));
}

}  // namespace
