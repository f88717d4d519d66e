// The URL of the blocklist on a server, which mirrors the place of the downloaded file.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistURL.h"
#include "tests/report/download/BlocklistLocationsFixture.h"

namespace {

using qelcore::host::FileOperation;
using qelsystemcompatibilityreport::GetDownloadBlocklistURL;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kBase = "https://updates.example.com/root";

class BlocklistURLTest : public testsupport::BlocklistLocationsFixture {
 protected:
  static std::string Url() { return GetDownloadBlocklistURL(kBase); }
};

TEST_F(BlocklistURLTest, MirrorsTheVersionedDirectoryInLowerCase) {
  qelcore::host::SetApplicationVersion(7, 3);
  ASSERT_TRUE(qelcore::host::BeginProcess());
  const std::string expected = std::string(kBase) + "/systemcompatibilityreport/7.3/win/blocklist.en_US.json";
  EXPECT_EQ(Url(), expected);
  EXPECT_THAT(mHost.Traced(6), Contains("Download will use URL: \"" + expected + "\""));
  EXPECT_TRUE(std::filesystem::is_directory(mHost.Preferences() / "SystemCompatibilityReport/7.3/win"));
}

TEST_F(BlocklistURLTest, AnApplicationWithoutVersionHasADirectoryOfItsOwn) {
  EXPECT_EQ(Url(), std::string(kBase) + "/systemcompatibilityreport/-1.-1/win/blocklist.en_US.json");
}

TEST_F(BlocklistURLTest, MirrorsTheDeployedDirectory) {
  std::filesystem::create_directories(mHost.Preferences() / "SystemCompatibilityReport/Deployed");
  EXPECT_EQ(Url(), std::string(kBase) + "/systemcompatibilityreport/deployed/blocklist.en_US.json");
}

TEST_F(BlocklistURLTest, TheFilesNameKeepsItsCaseAndTheLanguageIsTheApplications) {
  qelcore::host::SetApplicationLanguage("pt_BR");
  EXPECT_THAT(Url(), testing::EndsWith("/win/blocklist.pt_BR.json"));
}

TEST_F(BlocklistURLTest, EveryFormOfBase) {
  const std::string path = "systemcompatibilityreport/-1.-1/win/blocklist.en_US.json";
  const struct {
    const char* mBase;
    std::string mUrl;
  } rows[] = {{"https://a.example", "https://a.example/" + path},
              {"https://a.example/", "https://a.example/" + path},
              {"https://a.example//", "https://a.example//" + path},
              {"https://a.example/Root Dir?x=1", "https://a.example/Root Dir?x=1/" + path},
              {"", "/" + path},
              {"/", "/" + path},
              {"M\xc3\xbcller", "M\xc3\xbcller/" + path}};
  for (const auto& row : rows) EXPECT_EQ(GetDownloadBlocklistURL(row.mBase), row.mUrl);
}

TEST_F(BlocklistURLTest, ATestFileDisablesTheDownload) {
  const std::string file = "preferences/SystemCompatibilityReport/test/blocklist.json";
  mHost.Files().Write(file, "{}");
  EXPECT_EQ(Url(), "");
  EXPECT_THAT(mHost.Traced(6), Contains("Download disabled because using test directory at " + Quoted(file)));
}

TEST_F(BlocklistURLTest, ATestDirectoryWithoutFileDoesNot) {
  std::filesystem::create_directories(mHost.Preferences() / "SystemCompatibilityReport/test");
  EXPECT_THAT(Url(), HasSubstr("/-1.-1/win/"));
}

TEST_F(BlocklistURLTest, TheComponentsAreLoggedFirstAtEveryRequest) {
  static_cast<void>(Url());
  static_cast<void>(GetDownloadBlocklistURL(""));
  EXPECT_THAT(mHost.mRegistryRequests, ElementsAre(false, false));
  ASSERT_FALSE(mHost.mTrace.empty());
  EXPECT_EQ(mHost.mTrace.front().mChannel, "OSComponentRegistry");
  EXPECT_EQ(std::count_if(mHost.mTrace.begin(), mHost.mTrace.end(),
                          [](const auto& message) { return message.mChannel == "OSComponentRegistry"; }),
            2);
  mHost.TakeRegistryAway();
  EXPECT_THAT(Url(), HasSubstr("/win/"));
}

TEST_F(BlocklistURLTest, APreferencesPathThatHasTheNameInIt) {
  // The walk ends at the first directory of that name from below.
  qelcore::host::SetDirectories(
      {.mPreferences = (mHost.Files().Path() / "systemCompatibilityREPORT/Deep/prefs").string(),
       .mApplication = {},
       .mDocuments = {},
       .mState = {}});
  EXPECT_EQ(Url(), std::string(kBase) + "/systemcompatibilityreport/-1.-1/win/blocklist.en_US.json");
}

TEST_F(BlocklistURLTest, AFileElsewhereHasNoURL) {
  for (const char16_t* const path :
       {u"/home/a/prefs/7.3/win/blocklist.en_US.json", u"/prefs/blocklist.en_US.json",
        u"prefs/win/blocklist.en_US.json", u"/home/SystemCompatibilityReports/win/blocklist.en_US.json"}) {
    SCOPED_TRACE(qelcore::string::UTF16to8(path));
    EXPECT_EQ(qelsystemcompatibilityreport::BlocklistURL(kBase, qelcore::filesupport::File(path)), "");
    EXPECT_EQ(mHost.Traced(1).back(),
              "Download disabled because no \"SystemCompatibilityReport\" directory found in \"" +
                  qelcore::string::UTF16to8(path) + "\"");
  }
}

TEST_F(BlocklistURLTest, LettersThatAreNotASCIIKeepTheirCase) {
  EXPECT_EQ(qelsystemcompatibilityreport::BlocklistURL(
                kBase, qelcore::filesupport::File(u"/SYSTEMcompatibilityReport/\u00c4B/WIN/Blocklist.JSON")),
            std::string(kBase) +
                "/systemcompatibilityreport/\xc3\x84"
                "b/win/Blocklist.JSON");
}

TEST_F(BlocklistURLTest, DirectoriesThatCannotBeMadeGiveNoURL) {
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kCreateDirectory) throw std::runtime_error("read-only");
  });
  EXPECT_EQ(Url(), "");
  EXPECT_THAT(mHost.mExceptionContexts,
              ElementsAre("qelsystemcompatibilityreport::GetDownloadBlocklistFileLocation"));
}

TEST_F(BlocklistURLTest, AMachineThatCannotBeReadKeepsNobodyFromAsking) {
  qelcore::host::SetComponentSource([](bool) -> std::shared_ptr<const qelcore::utility::OSComponentRegistry> {
    throw std::runtime_error("no machine");
  });
  EXPECT_THAT(Url(), HasSubstr("/win/"));
  EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("no machine"));
}

}  // namespace
