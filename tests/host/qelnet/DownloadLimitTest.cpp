// The debug setting for the largest body.
#include <gmock/gmock.h>

#include <cstdint>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "tests/host/qelnet/NetTest.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testsupport::HttpAnswer;
using testsupport::LoopbackServer;

class DownloadLimit : public testsupport::NetTest {
 protected:
  static void Set(const std::string& value) {
    qelcore::host::SetDebugEntryForThisRun("host.largest_download_bytes", value);
  }

  /// Why a body of which the server announces this length, and sends nothing, is not received.
  std::string ReasonFor(std::uint64_t length) {
    const std::size_t before = mAnswers->Now().size();
    EXPECT_TRUE(Get(mServer.Url('/' + std::to_string(length))));
    EXPECT_EQ(mAnswers->WaitFor(before + 1).back().mStatus, 0);
    return Warnings().back();
  }

  /// Whether the largest body is that large and no larger.
  void ExpectLimit(std::uint64_t limit) {
    const std::string tooLarge = "The body is larger than " + std::to_string(limit) + " bytes.";
    EXPECT_EQ(ReasonFor(limit + 1), tooLarge);
    EXPECT_NE(ReasonFor(limit), tooLarge);
  }

  const LoopbackServer mServer{LoopbackServer::Answering([](const std::string& path) {
    return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + path.substr(1) + "\r\n\r\n";
  })};
};

TEST_F(DownloadLimit, FollowsTheSettingWithinItsBounds) {
  struct Row {
    const char* mSetting;
    std::uint64_t mLimit;
  };
  const Row rows[] = {
      {"67108864", 67'108'864},
      {"100000", 100'000},
      {"0100000", 100'000},
      {"1023", 1'024},
      {"1024", 1'024},
      {"1025", 1'025},
      {"0", 1'024},
      {"67108863", 67'108'863},
      {"67108865", 67'108'864},
      {"1073741824", 67'108'864},
      {"99999999999999999999999999", 67'108'864},
      {"", 67'108'864},
      {"-5000", 67'108'864},
      {"+5000", 67'108'864},
      {" 5000", 67'108'864},
      {"5000 ", 67'108'864},
      {"5e3", 67'108'864},
      {"0x5000", 67'108'864},
      {"5000 MiB", 67'108'864},
      {"99999999999999999999999999 bytes", 67'108'864},
      {"none", 67'108'864},
  };
  ExpectLimit(67'108'864);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.mSetting);
    Set(row.mSetting);
    ExpectLimit(row.mLimit);
  }
}

TEST_F(DownloadLimit, TheSmallerOfTheSettingAndTheOptionsHolds) {
  qelnet::host::SetOptions({.mLargestBody = 2'000});
  ExpectLimit(2'000);
  Set("5000");
  ExpectLimit(2'000);
  Set("1500");
  ExpectLimit(1'500);
  qelnet::host::SetOptions({});
  ExpectLimit(1'500);
  Set("100000000");
  ExpectLimit(67'108'864);
}

TEST_F(DownloadLimit, TheSettingCanBeListed) {
  EXPECT_EQ(qelcore::host::GetDebugEntries().at("host.largest_download_bytes"), "67108864");
}

TEST_F(DownloadLimit, TheSavedSettingHolds) {
  qelcore::host::SaveDebugEntry("host.largest_download_bytes", "3000");
  ExpectLimit(3'000);
  const LoopbackServer server(LoopbackServer::Answering(
      [](const std::string&) { return HttpAnswer("200 OK", std::string(3'000, 'a')); }));
  const std::size_t before = mAnswers->Now().size();
  ASSERT_TRUE(Get(server.Url("/")));
  EXPECT_EQ(mAnswers->WaitFor(before + 1).back().mStatus, 200);
}

}  // namespace
