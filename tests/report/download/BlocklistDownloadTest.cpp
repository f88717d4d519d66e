// A download from the host's request to the stored file, against a real server.
#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>

#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "tests/report/download/BlocklistDownloadFixture.h"
#include "tests/support/Gate.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using namespace qelsystemcompatibilityreport;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testsupport::HttpAnswer;
using testsupport::HttpRedirect;
using testsupport::LoopbackServer;

using BlocklistDownloadTest = testsupport::BlocklistDownloadFixture;

constexpr const char* kDelaySetting = "qelsystemcompatibilityreport.download_delay_secs";

LoopbackServer::ConnectionHandler Always(const std::string& answer) {
  return LoopbackServer::Answering([answer](const std::string&) { return answer; });
}

// ---- The whole way

TEST_F(BlocklistDownloadTest, TheUrlAndTheFileMirrorEachOther) {
  std::string asked;
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    asked = path;
    return HttpAnswer("200 OK", GoodBlocklist());
  }));
  const std::string url = GetDownloadBlocklistURL(server.Url("/lists"));
  DownloadBlocklistInTheBackground(url, 0, Callback());
  EXPECT_EQ(Advance(9'999), 0U);
  EXPECT_EQ(Advance(1), 1U);
  EXPECT_THAT(mResults.WaitFor(1), ElementsAre(DownloadResult::DownloadSucceeded));
  EXPECT_EQ(asked, "/lists/systemcompatibilityreport/-1.-1/win/blocklist.en_US.json");
  EXPECT_EQ(Downloaded(), GoodBlocklist());
  EXPECT_THAT(mHost.Traced(6),
              Contains("Blocklist download to \"" +
                       testsupport::PathText(mHost.Files().Path() / kDownloaded) + "\" succeeded"));
  EXPECT_THAT(mHost.Traced(6), Contains("Download Blocklist URL: \"" + url + "\""));
}

TEST_F(BlocklistDownloadTest, EveryAnswer) {
  const std::string good = GoodBlocklist();
  const struct {
    const char* mName;
    std::string mAnswer;
    DownloadResult mResult;
  } rows[] = {
      {"not modified", "HTTP/1.1 304 Not Modified\r\nConnection: close\r\n\r\n",
       DownloadResult::DownloadHttpError},
      {"not found", HttpAnswer("404 Not Found", good), DownloadResult::DownloadHttpError},
      {"server error", HttpAnswer("500 Internal Server Error", good), DownloadResult::DownloadHttpError},
      {"another success", HttpAnswer("203 Non-Authoritative Information", good),
       DownloadResult::DownloadHttpError},
      {"redirect loop", HttpRedirect("302 Found", "/loop"), DownloadResult::DownloadHttpError},
      {"truncated", HttpAnswer("200 OK", good).substr(0, HttpAnswer("200 OK", good).size() - 5),
       DownloadResult::DownloadHttpError},
      {"no HTTP", "what?\r\n", DownloadResult::DownloadHttpError},
      {"empty", HttpAnswer("200 OK", ""), DownloadResult::DownloadCorrupted},
      {"no JSON", HttpAnswer("200 OK", "<html>Log in</html>"), DownloadResult::DownloadCorrupted},
      {"half a list", HttpAnswer("200 OK", good.substr(0, good.size() / 2)),
       DownloadResult::DownloadCorrupted},
      {"no defaults", HttpAnswer("200 OK", R"({"blocklist_version":1,"blocklist":[]})"),
       DownloadResult::DownloadCorrupted},
      {"good", HttpAnswer("200 OK", good), DownloadResult::DownloadSucceeded},
  };
  std::size_t count = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mName);
    mHost.Files().Write(kDownloaded, "old");
    const LoopbackServer server(Always(row.mAnswer));
    EXPECT_EQ(DownloadBlocklistNow(server.Url("/x"), Callback()), DownloadResult::DownloadRequested);
    EXPECT_EQ(mResults.WaitFor(++count).back(), row.mResult);
    EXPECT_EQ(Downloaded(), row.mResult == DownloadResult::DownloadSucceeded ? good : "old");
  }
}

TEST_F(BlocklistDownloadTest, ARedirectIsFollowed) {
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    return path == "/new" ? HttpAnswer("200 OK", GoodBlocklist())
                          : HttpRedirect("301 Moved Permanently", "/new");
  }));
  static_cast<void>(DownloadBlocklistNow(server.Url("/x"), Callback()));
  EXPECT_THAT(mResults.WaitFor(1), ElementsAre(DownloadResult::DownloadSucceeded));
}

TEST_F(BlocklistDownloadTest, ABodyOverTheLimitIsNotStored) {
  qelnet::host::SetOptions({.mLargestBody = 20});
  const LoopbackServer server(Always(HttpAnswer("200 OK", GoodBlocklist())));
  static_cast<void>(DownloadBlocklistNow(server.Url("/x"), Callback()));
  EXPECT_THAT(mResults.WaitFor(1), ElementsAre(DownloadResult::DownloadHttpError));
  EXPECT_EQ(Downloaded(), "-");
}

TEST_F(BlocklistDownloadTest, ATrustedServerIsReadAndAnotherIsNot) {
  const testsupport::CertificateAuthority authority;
  const testsupport::CertificateAuthority other;
  const std::string trusted = mHost.Files().Write("authority.pem", authority.AsPem()).string();
  qelnet::host::SetOptions({.mCertificateAuthorities = trusted});
  const LoopbackServer good(authority.Issue("DNS:localhost"), Always(HttpAnswer("200 OK", GoodBlocklist())));
  const LoopbackServer bad(other.Issue("DNS:localhost"), Always(HttpAnswer("200 OK", GoodBlocklist("bad"))));
  static_cast<void>(DownloadBlocklistNow(good.Url("/x"), Callback()));
  EXPECT_EQ(mResults.WaitFor(1).back(), DownloadResult::DownloadSucceeded);
  static_cast<void>(DownloadBlocklistNow(bad.Url("/x"), Callback()));
  EXPECT_EQ(mResults.WaitFor(2).back(), DownloadResult::DownloadHttpError);
  EXPECT_EQ(Downloaded(), GoodBlocklist());
}

TEST_F(BlocklistDownloadTest, AStalledServerIsGivenUp) {
  qelnet::host::SetOptions({.mStallTimeout = std::chrono::milliseconds(50)});
  testsupport::Gate end;
  const LoopbackServer server([&](testsupport::ServerConnection&) { end.Wait(); });
  static_cast<void>(DownloadBlocklistNow(server.Url("/x"), Callback()));
  EXPECT_THAT(mResults.WaitFor(1), ElementsAre(DownloadResult::DownloadHttpError));
  end.Open();
}

TEST_F(BlocklistDownloadTest, ADownloadInFlightAtTheEndIsToldAndChangesNothing) {
  testsupport::Gate asked;
  testsupport::Gate end;
  const LoopbackServer server([&](testsupport::ServerConnection&) {
    asked.Open();
    end.Wait();
  });
  mHost.Files().Write(kDownloaded, "old");
  static_cast<void>(DownloadBlocklistNow(server.Url("/x"), Callback()));
  asked.Wait();
  qelnet::host::Shutdown();
  EXPECT_THAT(mResults.Now(), ElementsAre(DownloadResult::DownloadHttpError));
  EXPECT_EQ(Downloaded(), "old");
  end.Open();
}

TEST_F(BlocklistDownloadTest, ATestFileIsWhereAForcedDownloadGoes) {
  const std::string file = "preferences/SystemCompatibilityReport/test/blocklist.json";
  mHost.Files().Write(file, "{}");
  const LoopbackServer server(Always(HttpAnswer("200 OK", GoodBlocklist())));
  static_cast<void>(DownloadBlocklistNow(server.Url("/x"), Callback()));
  EXPECT_THAT(mResults.WaitFor(1), ElementsAre(DownloadResult::DownloadSucceeded));
  EXPECT_EQ(mHost.Files().Read(file), GoodBlocklist());
  EXPECT_EQ(Downloaded(), "-");
}

TEST_F(BlocklistDownloadTest, EveryRequestHasAnIdentifierOfItsOwn) {
  const LoopbackServer server(Always(HttpAnswer("200 OK", GoodBlocklist())));
  for (std::size_t request = 1; request <= 2; ++request) {
    static_cast<void>(DownloadBlocklistNow(server.Url("/x"), Callback()));
    static_cast<void>(mResults.WaitFor(request));
  }
  std::set<std::string> identifiers;
  for (const auto& message : mHost.mTrace) {
    // "GET ", the identifier's 36 characters and ": " come first.
    if (message.mChannel == "qelnet" && message.mText.starts_with("GET "))
      identifiers.insert(message.mText.substr(4, 36));
  }
  EXPECT_EQ(identifiers.size(), 2U);
  EXPECT_FALSE(identifiers.contains("00000000-0000-0000-0000-000000000000"));
}

// ---- The wait

TEST_F(BlocklistDownloadTest, TheDelay) {
  const struct {
    const char* mSetting;
    std::uint32_t mDelay;
    const char* mSeconds;
    std::uint64_t mMilliseconds;
  } rows[] = {
      {"10", 0, "10", 10'000},
      {"3", 0, "3", 3'000},
      {"3", 1500, "1.5", 1'500},
      {"3", 1, "0.001", 1},
      {"abc", 0, "0", 0},
      {"", 0, "0", 0},
      {" 2 seconds", 0, "2", 2'000},
      {"0", 0, "0", 0},
      // Passes through single precision and the six digits that a stream shows.
      {"3", 16'777'217, "16777.2", 16'777'217},
      // What does not fit is the longest that does.
      {"4294968", 0, "4.29497e+06", 4'294'967'295},
      {"99999999999999999999999", 0, "4.29497e+06", 4'294'967'295},
      {"-1", 0, "4.29497e+06", 4'294'967'295},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.mSetting) + " " + std::to_string(row.mDelay));
    EnableReports(true);
    qelcore::host::SetDebugEntryForThisRun(kDelaySetting, row.mSetting);
    DownloadBlocklistInTheBackground("http://127.0.0.1:1/", row.mDelay, {});
    EXPECT_EQ(mHost.Traced(6).back(),
              std::string("Download of blocklist from \"http://127.0.0.1:1/\" will begin in ") +
                  row.mSeconds + " seconds");
    // The task finds the service off, so that nothing is asked for.
    EnableReports(false);
    if (row.mMilliseconds > 0) {
      EXPECT_EQ(Advance(row.mMilliseconds - 1), 0U);
    }
    EXPECT_EQ(Advance(row.mMilliseconds > 0 ? 1 : 0), 1U);
  }
  EnableReports(true);
}

TEST_F(BlocklistDownloadTest, TheDefaultDelayIsTenSeconds) {
  DownloadBlocklistInTheBackground("http://127.0.0.1:1/", 0, {});
  EXPECT_THAT(mHost.Traced(6),
              ElementsAre("Download of blocklist from \"http://127.0.0.1:1/\" will begin in 10 seconds"));
}

// ---- What is refused

TEST_F(BlocklistDownloadTest, AnEmptyUrlInTheBackgroundCallsNobody) {
  DownloadBlocklistInTheBackground("", 0, Callback());
  EXPECT_EQ(Advance(1'000'000), 0U);
  EXPECT_THAT(mHost.Traced(6), ElementsAre("No blocklist URL specified to download in the background"));
  EXPECT_THAT(mResults.Now(), IsEmpty());
}

TEST_F(BlocklistDownloadTest, AnEmptyUrlNowIsTold) {
  EXPECT_EQ(DownloadBlocklistNow("", Callback()), DownloadResult::DownloadNoURL);
  EXPECT_EQ(DownloadBlocklistNow("", {}), DownloadResult::DownloadNoURL);
  EXPECT_THAT(mResults.Now(), ElementsAre(DownloadResult::DownloadNoURL));
  EXPECT_THAT(mHost.Traced(6), ElementsAre("No Download Blocklist URL", "No Download Blocklist URL"));
}

TEST_F(BlocklistDownloadTest, ACallbackThatThrowsIsLoggedAndTheResultStays) {
  const auto throwing = [](DownloadResult) { throw std::runtime_error("host"); };
  EXPECT_EQ(DownloadBlocklistNow("", throwing), DownloadResult::DownloadNoURL);
  EnableReports(false);
  EXPECT_EQ(DownloadBlocklistNow("x", throwing), DownloadResult::DownloadReportsDisabled);
  EnableReports(true);
  EXPECT_EQ(DownloadBlocklistNow("ftp://x", throwing), DownloadResult::DownloadRequestFailed);
  EXPECT_THAT(mHost.mExceptionContexts,
              testing::Each(std::string("qelsystemcompatibilityreport::DownloadBlocklistNow")));
  EXPECT_EQ(mHost.mExceptionContexts.size(), 3U);
}

TEST_F(BlocklistDownloadTest, NothingIsFetchedWhileTheServiceIsOff) {
  DownloadBlocklistInTheBackground("http://127.0.0.1:1/", 5, Callback());
  EnableReports(false);
  EXPECT_EQ(Advance(5), 1U);
  EXPECT_EQ(DownloadBlocklistNow("", Callback()), DownloadResult::DownloadReportsDisabled);
  EXPECT_THAT(mResults.Now(),
              ElementsAre(DownloadResult::DownloadReportsDisabled, DownloadResult::DownloadReportsDisabled));
  EXPECT_EQ(mHost.Traced(6).back(), "Download disabled because reports are disabled");
  EnableReports(true);
}

TEST_F(BlocklistDownloadTest, AnAddressThatCannotBeAskedIsRefused) {
  for (const char* const url :
       {"ftp://example.com/list", "file:///etc/passwd", "/systemcompatibilityreport/x"}) {
    SCOPED_TRACE(url);
    EXPECT_EQ(DownloadBlocklistNow(url, Callback()), DownloadResult::DownloadRequestFailed);
    EXPECT_EQ(mResults.Now().back(), DownloadResult::DownloadRequestFailed);
    EXPECT_EQ(mHost.Traced(6).back(), "Download failed HTTP GET");
  }
}

TEST_F(BlocklistDownloadTest, AServerThatIsNotThere) {
  EXPECT_EQ(DownloadBlocklistNow(testsupport::UrlWithoutServer("/x"), Callback()),
            DownloadResult::DownloadRequested);
  EXPECT_THAT(mResults.WaitFor(1), ElementsAre(DownloadResult::DownloadHttpError));
  EXPECT_THAT(mHost.Traced(6), Contains(HasSubstr("HTTP GET returned status 0. Usually no web update")));
}

}  // namespace
