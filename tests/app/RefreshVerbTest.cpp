#include <filesystem>

#include "tests/app/ScrTest.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testsupport::Blocklist;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::SystemRule;

class RefreshVerbTest : public testsupport::ScrTest {
 protected:
  static constexpr const char* kDownloaded =
      "preferences/SystemCompatibilityReport/1.0/win/blocklist.en_US.json";

  testsupport::EnvironmentVariable mNoProxy{"no_proxy", "*"};
};

TEST_F(RefreshVerbTest, TheNextReportReadsWhatWasFetched) {
  const std::string list = Blocklist(SystemRule(R"("error_level": "FATAL",
                                         "info_message": "freshly fetched")"));
  std::string asked;
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string& path) {
    asked = path;
    return HttpAnswer("200 OK", list);
  }));
  const auto result = Scr({"refresh", "--base", server.Url("/root/"), "--now"});
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_EQ(asked, "/root/systemcompatibilityreport/1.0/win/blocklist.en_US.json");
  EXPECT_EQ(
      result.mOutput,
      server.Url(asked) + ": the blocklist was fetched, verified and stored; the next report reads it\n");
  // Nothing moves where nobody looks.
  EXPECT_EQ(result.mErrors, "");
  EXPECT_EQ(mFiles.Read(kDownloaded), list);
  EXPECT_NE(Scr({"report"}).mOutput.find("freshly fetched"), std::string::npos);
}

TEST_F(RefreshVerbTest, TheSettingSaysHowLongToWait) {
  const LoopbackServer server(
      LoopbackServer::Answering([&](const std::string&) { return HttpAnswer("200 OK", Blocklist("")); }));
  const struct {
    const char* mSetting;
    const char* mText;
  } rows[] = {{"0", "will begin in 0.001 seconds"}, {"1", "will begin in 1 seconds"}};
  for (const auto& row : rows) {
    const auto result = Scr({"--trace", "6", "--set",
                             std::string("qelsystemcompatibilityreport.download_delay_secs=") + row.mSetting,
                             "refresh", "--base", server.Url("")});
    EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
    EXPECT_NE(result.mErrors.find(row.mText), std::string::npos) << result.mErrors;
  }
}

TEST_F(RefreshVerbTest, EveryFailureSaysWhatHappenedAndKeepsTheOldList) {
  const struct {
    std::string mAnswer;
    const char* mText;
  } rows[] = {
      {HttpAnswer("404 Not Found", ""), "the server has no newer blocklist (status 404)"},
      {"HTTP/1.1 304 Not Modified\r\nConnection: close\r\n\r\n",
       "the server has no newer blocklist (status 304)"},
      {HttpAnswer("500 Internal Server Error", ""), "answered with status 500"},
      {HttpAnswer("200 OK", ""), "no complete blocklist"},
      {HttpAnswer("200 OK", "<html>"), "no complete blocklist"},
      {"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf", "there was no whole answer: "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mText);
    Write(kDownloaded, "old");
    const LoopbackServer server(LoopbackServer::Answering([&](const std::string&) { return row.mAnswer; }));
    ExpectError(Scr({"refresh", "--base", server.Url(""), "--now"}), row.mText);
    EXPECT_EQ(mFiles.Read(kDownloaded), "old");
  }
}

TEST_F(RefreshVerbTest, AListThatReportsDoNotReadIsCalledSo) {
  const LoopbackServer server(
      LoopbackServer::Answering([&](const std::string&) { return HttpAnswer("200 OK", Blocklist("")); }));
  const auto result = Scr({"--set", "qelsystemcompatibilityreport.use_installed_blocklist=true", "refresh",
                           "--base", server.Url(""), "--now"});
  EXPECT_EQ(result.mExitCode, 0);
  EXPECT_NE(result.mOutput.find("reports do not read it while"), std::string::npos) << result.mOutput;
}

TEST_F(RefreshVerbTest, AListThatCannotBeStored) {
  std::filesystem::create_directories(mFiles.Path() / kDownloaded / "inside");
  const LoopbackServer server(
      LoopbackServer::Answering([&](const std::string&) { return HttpAnswer("200 OK", Blocklist("")); }));
  ExpectError(Scr({"refresh", "--base", server.Url(""), "--now"}),
              "the blocklist could not be stored; the old one stays: ");
}

TEST_F(RefreshVerbTest, APasswordIsNotPrinted) {
  const std::string url = testsupport::UrlWithoutServer("");
  const auto result = Scr({"refresh", "--base", "HTTP://user:secret@" + url.substr(7), "--now"});
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_EQ(result.mErrors.find("secret"), std::string::npos) << result.mErrors;
}

TEST_F(RefreshVerbTest, WrongUse) {
  ExpectError(Scr({"refresh"}), "--base");
  ExpectError(Scr({"refresh", "--base", ""}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "ftp://example.com"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "example.com"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "https://"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "http:///lists"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "http://example.com/lists?a=b"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "http://example.com/lists#a"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "http://a b"}), "write it like https://");
  ExpectError(Scr({"refresh", "--base", "http://a:99999", "--now"}), "not an address that can be asked");
}

TEST_F(RefreshVerbTest, AServerThatIsNotThere) {
  ExpectError(Scr({"refresh", "--base", testsupport::UrlWithoutServer(""), "--now"}),
              "there was no whole answer: Failed to connect");
}

TEST_F(RefreshVerbTest, AServerWhoseCertificateNobodyKnows) {
  const testsupport::CertificateAuthority authority;
  const LoopbackServer server(
      authority.Issue("DNS:localhost"),
      LoopbackServer::Answering([](const std::string&) { return HttpAnswer("200 OK", Blocklist("")); }));
  ExpectError(Scr({"refresh", "--base", server.Url(""), "--now"}), "certificate");
  EXPECT_FALSE(Exists(kDownloaded));
}

TEST_F(RefreshVerbTest, ATestFileIsNamed) {
  Write("preferences/SystemCompatibilityReport/test/blocklist.json", "{}");
  ExpectError(Scr({"refresh", "--base", "https://example.com", "--now"}), "test/blocklist.json");
}

TEST_F(RefreshVerbTest, APlaceThatCannotBeMadeIsNamed) {
  Write("preferences/SystemCompatibilityReport", "a file in the way");
  ExpectError(Scr({"refresh", "--base", "https://example.com", "--now"}),
              "there is no place for a downloaded blocklist: ");
}

}  // namespace
