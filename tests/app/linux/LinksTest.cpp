// Symbolic links in the preferences directory: what is written stays in it. Links are read through, because
// users keep their settings elsewhere by means of them.
#include <gmock/gmock.h>

#include "tests/app/ScrTest.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using testing::HasSubstr;
using testsupport::Blocklist;
using testsupport::HttpAnswer;
using testsupport::LoopbackServer;
using testsupport::SystemRule;

constexpr const char* kPrecious = "what nobody may touch\n";

class LinksTest : public testsupport::ScrTest {
 protected:
  LinksTest() {
    Write("application/SystemCompatibilityReport/blocklist.en_US.json",
          Blocklist(SystemRule(R"("error_level": "WARN", "info_message": "installed")")));
    std::filesystem::create_directories(mFiles.Path() / "preferences");
    std::filesystem::create_directories(mFiles.Path() / "elsewhere");
  }

  void Link(const std::string& target, const std::string& name) const {
    const std::filesystem::path path = mFiles.Path() / name;
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::create_symlink(mFiles.Path() / target, path);
  }

  [[nodiscard]] bool IsLink(const std::string& name) const {
    return std::filesystem::is_symlink(mFiles.Path() / name);
  }

  /// What is in the directory that the links lead to.
  [[nodiscard]] std::vector<std::string> Elsewhere() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(mFiles.Path() / "elsewhere"))
      names.push_back(entry.path().filename());
    return names;
  }

  testsupport::EnvironmentVariable mNoProxy{"no_proxy", "*"};
};

TEST_F(LinksTest, FilesThatAreReplacedTakeTheLinksPlace) {
  const char* const names[] = {"SCRPriorState.json", "SystemProperties.json", "crash-trail.json",
                               "DebugDatabase.json"};
  for (const char* const name : names) {
    Write(std::string("elsewhere/") + name, kPrecious);
    Link(std::string("elsewhere/") + name, std::string("preferences/") + name);
  }
  EXPECT_EQ(Scr({"settings", "host.largest_download_bytes=2000"}).mExitCode, 0);
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("installed"));
  for (const char* const name : names) {
    EXPECT_FALSE(IsLink(std::string("preferences/") + name)) << name;
    EXPECT_EQ(mFiles.Read(std::string("elsewhere/") + name), kPrecious);
  }
}

TEST_F(LinksTest, LogsAreNotAppendedToThroughLinks) {
  for (const char* const name : {"analytics-events.jsonl", "usage-statistics.jsonl"}) {
    Write(std::string("elsewhere/") + name, kPrecious);
    Link(std::string("elsewhere/") + name, std::string("preferences/") + name);
  }
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("installed"));
  static_cast<void>(Scr({"launch"}));
  for (const char* const name : {"analytics-events.jsonl", "usage-statistics.jsonl"})
    EXPECT_EQ(mFiles.Read(std::string("elsewhere/") + name), kPrecious);
}

TEST_F(LinksTest, LockFilesAreNotMadeThroughLinks) {
  Link("elsewhere/lock", "preferences/analytics-events.jsonl.lock");
  Link("elsewhere/log", "preferences/usage-statistics.jsonl");
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("installed"));
  static_cast<void>(Scr({"launch"}));
  EXPECT_EQ(Elsewhere(), std::vector<std::string>());
}

TEST_F(LinksTest, TheOlderLogThatIsALinkIsReplaced) {
  Write("elsewhere/older", kPrecious);
  Link("elsewhere/older", "preferences/analytics-events.jsonl.1");
  Write("preferences/analytics-events.jsonl", std::string(1'048'576, '\n'));
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("installed"));
  EXPECT_EQ(mFiles.Read("elsewhere/older"), kPrecious);
  EXPECT_FALSE(IsLink("preferences/analytics-events.jsonl.1"));
}

TEST_F(LinksTest, TheTraceLogIsNotAppendedToThroughALink) {
  Write("elsewhere/trace", kPrecious);
  Link("elsewhere/trace", "preferences/trace.log");
  // The log is written when something goes wrong.
  const auto result = Scr({"report", "--output", Path("missing/report.txt")});
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_EQ(mFiles.Read("elsewhere/trace"), kPrecious);
}

TEST_F(LinksTest, ADownloadIsNotStoredWhereALinkLeads) {
  const LoopbackServer server(LoopbackServer::Answering(
      [&](const std::string&) { return HttpAnswer("200 OK", Blocklist(SystemRule())); }));
  for (const char* const directory :
       {"preferences/SystemCompatibilityReport", "preferences/SystemCompatibilityReport/1.0",
        "preferences/SystemCompatibilityReport/1.0/win", "preferences/SystemCompatibilityReport/Deployed"}) {
    SCOPED_TRACE(directory);
    std::filesystem::remove_all(mFiles.Path() / "preferences/SystemCompatibilityReport");
    Link("elsewhere", directory);
    const auto result = Scr({"refresh", "--now", "--base", server.Url("")});
    EXPECT_EQ(result.mExitCode, 1) << result.mOutput;
    EXPECT_EQ(Elsewhere(), std::vector<std::string>());
    EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("installed"));
  }
}

TEST_F(LinksTest, ADownloadTakesTheLinksPlace) {
  constexpr const char* kDownloaded = "preferences/SystemCompatibilityReport/1.0/win/blocklist.en_US.json";
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string&) {
    return HttpAnswer("200 OK", Blocklist(SystemRule(R"("info_message": "downloaded")")));
  }));
  Write("elsewhere/list", kPrecious);
  Link("elsewhere/list", kDownloaded);
  EXPECT_EQ(Scr({"refresh", "--now", "--base", server.Url("")}).mExitCode, 0);
  EXPECT_EQ(mFiles.Read("elsewhere/list"), kPrecious);
  EXPECT_FALSE(IsLink(kDownloaded));
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("downloaded"));
}

// ---- What links may do

TEST_F(LinksTest, ThePreferencesDirectoryMayBeALink) {
  std::filesystem::remove(mFiles.Path() / "preferences");
  Link("elsewhere", "preferences");
  const LoopbackServer server(LoopbackServer::Answering([&](const std::string&) {
    return HttpAnswer("200 OK", Blocklist(SystemRule(R"("info_message": "downloaded")")));
  }));
  EXPECT_EQ(Scr({"refresh", "--now", "--base", server.Url("")}).mExitCode, 0);
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("downloaded"));
  EXPECT_TRUE(Exists("elsewhere/SCRPriorState.json"));
  EXPECT_TRUE(Exists("elsewhere/analytics-events.jsonl"));
}

TEST_F(LinksTest, ALinkIsReadThrough) {
  Write("elsewhere/list", Blocklist(SystemRule(R"("info_message": "kept elsewhere")")));
  Link("elsewhere/list", "preferences/SystemCompatibilityReport/1.0/win/blocklist.en_US.json");
  EXPECT_THAT(Scr({"report"}).mOutput, HasSubstr("kept elsewhere"));
}

TEST_F(LinksTest, WhatIsForgottenIsTheLink) {
  Write("elsewhere/state", kPrecious);
  Link("elsewhere/state", "preferences/SCRPriorState.json");
  EXPECT_EQ(Scr({"state", "forget"}).mExitCode, 0);
  EXPECT_EQ(mFiles.Read("elsewhere/state"), kPrecious);
  EXPECT_FALSE(IsLink("preferences/SCRPriorState.json"));
}

}  // namespace
