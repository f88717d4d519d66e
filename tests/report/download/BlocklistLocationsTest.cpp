// Where blocklists are.
#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <limits>
#include <stdexcept>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/report/download/ApplicationVersion.h"
#include "tests/report/ReportSupport.h"
#include "tests/report/download/BlocklistLocationsFixture.h"

namespace {

using qelcore::filesupport::File;
using qelcore::host::FileOperation;
using qelsystemcompatibilityreport::GetAppBlocklistFileLocation;
using qelsystemcompatibilityreport::GetDownloadBlocklistFileLocation;
using qelsystemcompatibilityreport::Language;
using qelsystemcompatibilityreport::SelectBlocklistFile;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Listing;

constexpr const char* kDownloadContext = "qelsystemcompatibilityreport::GetDownloadBlocklistFileLocation";

class BlocklistLocationsTest : public testsupport::BlocklistLocationsFixture {};

// ---- The installed file

TEST_F(BlocklistLocationsTest, TheInstalledFile) {
  qelcore::host::SetApplicationLanguage("de_DE");
  EXPECT_EQ(Place(GetAppBlocklistFileLocation()),
            "application/SystemCompatibilityReport/blocklist.de_DE.json");
  EXPECT_EQ(Place(GetAppBlocklistFileLocation("fr_FR")),
            "application/SystemCompatibilityReport/blocklist.fr_FR.json");
  EXPECT_THAT(mHost.Traced(6),
              ElementsAre("App Restricted list File Location: " +
                              Quoted("application/SystemCompatibilityReport/blocklist.de_DE.json"),
                          "App Restricted list File Location: " +
                              Quoted("application/SystemCompatibilityReport/blocklist.fr_FR.json")));
  EXPECT_THAT(Listing(mHost.Application()), IsEmpty());
  EXPECT_THAT(Listing(mHost.Preferences()), IsEmpty());
}

// ---- The downloaded file

TEST_F(BlocklistLocationsTest, TheDownloadedFilesDirectoriesAreMade) {
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json");
  EXPECT_THAT(Listing(mHost.Preferences()),
              ElementsAre("SystemCompatibilityReport/", "SystemCompatibilityReport/-1.-1/",
                          "SystemCompatibilityReport/-1.-1/win/"));
  const std::string creating = "System Compatibility Report creating download sub directory ";
  const std::string location = "Download Restricted list File Location: " +
                               Quoted("preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json");
  EXPECT_THAT(mHost.Traced(6),
              ElementsAre(creating + Quoted("preferences/SystemCompatibilityReport"),
                          creating + Quoted("preferences/SystemCompatibilityReport/-1.-1"),
                          creating + Quoted("preferences/SystemCompatibilityReport/-1.-1/win"), location));
  EXPECT_EQ(mHost.mTrace.size(), 4U);

  mHost.mTrace.clear();
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json");
  EXPECT_THAT(mHost.Traced(6), ElementsAre(location));
}

TEST_F(BlocklistLocationsTest, OnlyMissingDirectoriesAreMade) {
  std::filesystem::create_directories(mHost.Preferences() / "SystemCompatibilityReport" / "-1.-1");
  static_cast<void>(GetDownloadBlocklistFileLocation());
  ASSERT_EQ(mHost.Traced(6).size(), 2U);
  EXPECT_EQ(mHost.Traced(6)[0], "System Compatibility Report creating download sub directory " +
                                    Quoted("preferences/SystemCompatibilityReport/-1.-1/win"));
}

TEST_F(BlocklistLocationsTest, TheLanguageOfTheDownloadedFile) {
  qelcore::host::SetApplicationLanguage("ja_JP");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.ja_JP.json");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation("fr_FR")),
            "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.fr_FR.json");
}

TEST_F(BlocklistLocationsTest, TheTestFileStandsForEveryLanguage) {
  mHost.Files().Write("preferences/SystemCompatibilityReport/test/blocklist.json", "{}");
  std::filesystem::create_directory(mHost.Preferences() / "SystemCompatibilityReport" / "Deployed");
  for (const Language& language : {Language(), Language("fr_FR"), Language("en_US")}) {
    mHost.mTrace.clear();
    EXPECT_EQ(Place(GetDownloadBlocklistFileLocation(language)),
              "preferences/SystemCompatibilityReport/test/blocklist.json");
    EXPECT_THAT(
        mHost.Traced(6),
        ElementsAre("System Compatibility Report will use test blocklist file " +
                    Quoted("preferences/SystemCompatibilityReport/test/blocklist.json") + " for blocklists"));
  }
  EXPECT_FALSE(std::filesystem::exists(mHost.Preferences() / "SystemCompatibilityReport" / "-1.-1"));
}

TEST_F(BlocklistLocationsTest, WhatIsNoTestFile) {
  const std::filesystem::path directory = mHost.Preferences() / "SystemCompatibilityReport";
  const std::string usual = "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json";

  std::filesystem::create_directories(directory / "test");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()), usual) << "an empty directory";
  mHost.Files().Write("preferences/SystemCompatibilityReport/test/blocklist.en_US.json", "{}");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()), usual) << "a file of another name";
  std::filesystem::create_directory(directory / "test" / "blocklist.json");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()), usual) << "a directory of the file's name";
  std::filesystem::remove_all(directory / "test");
  mHost.Files().Write("preferences/SystemCompatibilityReport/test", "{}");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()), usual) << "a file of the directory's name";
}

TEST_F(BlocklistLocationsTest, TheDeployedDirectoryReplacesTheVersions) {
  std::filesystem::create_directories(mHost.Preferences() / "SystemCompatibilityReport" / "Deployed");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/Deployed/blocklist.en_US.json");
  // The last word of the first message is misspelt, and stays so.
  EXPECT_THAT(
      mHost.Traced(6),
      ElementsAre("System Compatibility Report will use Deployed directory, " +
                      Quoted("preferences/SystemCompatibilityReport/Deployed") + " for all resricted_lists",
                  "Download Restricted list File Location: " +
                      Quoted("preferences/SystemCompatibilityReport/Deployed/blocklist.en_US.json")));
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation("fr_FR")),
            "preferences/SystemCompatibilityReport/Deployed/blocklist.fr_FR.json");
  EXPECT_THAT(Listing(mHost.Preferences()),
              ElementsAre("SystemCompatibilityReport/", "SystemCompatibilityReport/Deployed/"));
}

TEST_F(BlocklistLocationsTest, AFileCalledDeployedIsNothing) {
  mHost.Files().Write("preferences/SystemCompatibilityReport/Deployed", "");
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json");
}

// ---- The application's version

TEST_F(BlocklistLocationsTest, TheApplicationsVersionNamesTheDirectory) {
  qelcore::host::SetApplicationVersion(7, 3);
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMajor, -1);
  ASSERT_TRUE(qelcore::host::BeginProcess());
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMajor, 7);
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMinor, 3);
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/7.3/win/blocklist.en_US.json");
}

TEST_F(BlocklistLocationsTest, VersionsAreSignedDecimalNumbers) {
  qelcore::host::SetApplicationVersion(std::numeric_limits<std::int32_t>::min(),
                                       std::numeric_limits<std::int32_t>::max());
  ASSERT_TRUE(qelcore::host::BeginProcess());
  EXPECT_EQ(Place(GetDownloadBlocklistFileLocation()),
            "preferences/SystemCompatibilityReport/-2147483648.2147483647/win/blocklist.en_US.json");
}

TEST_F(BlocklistLocationsTest, AProcessWithoutAVersionKeepsMinusOne) {
  ASSERT_TRUE(qelcore::host::BeginProcess());
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMajor, -1);
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMinor, -1);
}

// ---- Failures

TEST_F(BlocklistLocationsTest, WithoutPreferencesDirectoryThereIsNoDownloadedFile) {
  std::filesystem::remove_all(mHost.Preferences());
  mHost.Files().Write("preferences", "a file stands where the directory should");
  File file;
  EXPECT_NO_THROW(file = GetDownloadBlocklistFileLocation());
  EXPECT_EQ(file.GetFullPath(), u"");
  EXPECT_EQ(file.GetName(), u"");
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre(kDownloadContext));

  EXPECT_EQ(Place(SelectBlocklistFile()), "application/SystemCompatibilityReport/blocklist.en_US.json");
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", "{}");
  EXPECT_EQ(Place(SelectBlocklistFile()), "application/SystemCompatibilityReport/blocklist.en_US.json");
}

TEST_F(BlocklistLocationsTest, ADirectoryThatCannotBeMadeLeavesNoFile) {
  for (const char* const name : {"SystemCompatibilityReport", "-1.-1", "win"}) {
    SCOPED_TRACE(name);
    mHost.mExceptionContexts.clear();
    mHost.mExceptionTexts.clear();
    std::filesystem::remove_all(mHost.Preferences() / "SystemCompatibilityReport");
    qelcore::host::SetFileOperationHook([name](FileOperation operation, const std::string& path) {
      if (operation == FileOperation::kCreateDirectory && testsupport::PathFrom(path).filename() == name) {
        throw std::runtime_error("no room");
      }
    });
    EXPECT_EQ(GetDownloadBlocklistFileLocation().GetFullPath(), u"");
    EXPECT_THAT(mHost.mExceptionContexts, ElementsAre(kDownloadContext));
    EXPECT_THAT(mHost.mExceptionTexts, ElementsAre("no room"));
  }
}

TEST_F(BlocklistLocationsTest, MessagesNeedTheirLevel) {
  qelcore::host::SetTraceLevel(5);
  static_cast<void>(SelectBlocklistFile());
  EXPECT_THAT(mHost.mTrace, IsEmpty());
}

}  // namespace
