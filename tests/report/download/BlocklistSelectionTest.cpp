// Which blocklist a run reads.
#include <gmock/gmock.h>

#include <filesystem>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"
#include "tests/report/ReportSupport.h"
#include "tests/report/download/BlocklistLocationsFixture.h"

namespace {

using qelcore::filesupport::File;
using qelsystemcompatibilityreport::Language;
using qelsystemcompatibilityreport::SelectBlocklistFile;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Listing;

class BlocklistSelectionTest : public testsupport::BlocklistLocationsFixture {};

/// The candidates in their order, for an application in German.
struct SelectionRow {
  Language mRequested;
  std::vector<std::string> mCandidates;
};

TEST_F(BlocklistSelectionTest, TheFirstThatExistsIsRead) {
  qelcore::host::SetApplicationLanguage("de_DE");
  const std::string downloaded = "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.";
  const std::string installed = "application/SystemCompatibilityReport/blocklist.";
  const std::string files[] = {downloaded + "de_DE.json", downloaded + "fr_FR.json",
                               downloaded + "en_US.json", installed + "de_DE.json",
                               installed + "fr_FR.json",  installed + "en_US.json"};
  const std::vector<std::string> withoutFrench{files[0], files[3], files[2], files[5]};
  const SelectionRow rows[] = {
      {{}, withoutFrench},
      {"en_US", withoutFrench},
      {"de_DE", withoutFrench},
      {"fr_FR", {files[0], files[3], files[1], files[4], files[2], files[5]}},
  };
  for (unsigned present = 0; present < 64; ++present) {
    for (unsigned index = 0; index < 6; ++index) {
      if ((present >> index & 1U) != 0) {
        mHost.Files().Write(files[index], "{}");
      } else {
        std::filesystem::remove(mHost.Files().Path() / files[index]);
      }
    }
    for (const bool useInstalled : {false, true}) {
      UseInstalled(useInstalled ? "true" : "false");
      for (const SelectionRow& row : rows) {
        std::string expected = files[5];
        for (const std::string& candidate : row.mCandidates) {
          if (useInstalled && candidate.starts_with(downloaded)) continue;
          if (!std::filesystem::exists(mHost.Files().Path() / candidate)) continue;
          expected = candidate;
          break;
        }
        EXPECT_EQ(Place(SelectBlocklistFile(row.mRequested)), expected)
            << "present " << present << ", installed only " << useInstalled << ", requested "
            << row.mRequested.value_or("nothing");
      }
    }
  }
}

TEST_F(BlocklistSelectionTest, WithNothingPresentItIsTheInstalledEnglishFile) {
  qelcore::host::SetApplicationLanguage("fr_FR");
  for (const Language& language : {Language(), Language("fr_FR"), Language("en_US"), Language("de_DE")}) {
    const File file = SelectBlocklistFile(language);
    EXPECT_EQ(Place(file), "application/SystemCompatibilityReport/blocklist.en_US.json");
    EXPECT_FALSE(file.Exists());
  }
}

TEST_F(BlocklistSelectionTest, EachPlaceIsLookedAtOnceForEachLanguage) {
  qelcore::host::SetApplicationLanguage("de_DE");
  static_cast<void>(SelectBlocklistFile());  // makes the directories
  const auto looks = [&](const std::vector<std::string>& languages) {
    std::vector<std::string> messages;
    for (const std::string& language : languages) {
      const std::string name = "blocklist." + language + ".json";
      messages.push_back("Download Restricted list File Location: " +
                         Quoted("preferences/SystemCompatibilityReport/-1.-1/win/" + name));
      messages.push_back("App Restricted list File Location: " +
                         Quoted("application/SystemCompatibilityReport/" + name));
    }
    return messages;
  };
  const struct {
    Language mRequested;
    std::vector<std::string> mLanguages;
  } rows[] = {{{}, {"de_DE", "en_US"}},
              {"en_US", {"de_DE", "en_US"}},
              {"de_DE", {"de_DE", "de_DE", "en_US"}},
              {"fr_FR", {"de_DE", "fr_FR", "en_US"}}};
  for (const auto& row : rows) {
    mHost.mTrace.clear();
    static_cast<void>(SelectBlocklistFile(row.mRequested));
    EXPECT_EQ(mHost.Traced(6), looks(row.mLanguages)) << row.mRequested.value_or("nothing");
  }
}

TEST_F(BlocklistSelectionTest, TheTestFileBeatsEverythingButTheSetting) {
  mHost.Files().Write("preferences/SystemCompatibilityReport/test/blocklist.json", "{}");
  mHost.Files().Write("preferences/SystemCompatibilityReport/Deployed/blocklist.en_US.json", "{}");
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", "{}");
  EXPECT_EQ(Place(SelectBlocklistFile("fr_FR")), "preferences/SystemCompatibilityReport/test/blocklist.json");
  UseInstalled("true");
  EXPECT_EQ(Place(SelectBlocklistFile("fr_FR")),
            "application/SystemCompatibilityReport/blocklist.en_US.json");
}

TEST_F(BlocklistSelectionTest, TheDeployedFileBeatsTheInstalledOne) {
  mHost.Files().Write("preferences/SystemCompatibilityReport/Deployed/blocklist.en_US.json", "{}");
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", "{}");
  EXPECT_EQ(Place(SelectBlocklistFile()),
            "preferences/SystemCompatibilityReport/Deployed/blocklist.en_US.json");
}

TEST_F(BlocklistSelectionTest, OnlyExactlyTrueSwitchesTheDownloadsOff) {
  const std::string downloaded = "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json";
  mHost.Files().Write(downloaded, "{}");
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", "{}");
  for (const char* const value : {"false", "TRUE", "True", "1", "yes", "", " true", "true "}) {
    UseInstalled(value);
    EXPECT_EQ(Place(SelectBlocklistFile()), downloaded) << value;
  }
}

TEST_F(BlocklistSelectionTest, WithDownloadsOffNothingIsCreated) {
  UseInstalled("true");
  static_cast<void>(SelectBlocklistFile("fr_FR"));
  EXPECT_THAT(Listing(mHost.Preferences()), IsEmpty());
  const std::string message = "App Restricted list File Location: ";
  EXPECT_THAT(mHost.Traced(6),
              ElementsAre(message + Quoted("application/SystemCompatibilityReport/blocklist.en_US.json"),
                          message + Quoted("application/SystemCompatibilityReport/blocklist.fr_FR.json"),
                          message + Quoted("application/SystemCompatibilityReport/blocklist.en_US.json")));
}

TEST_F(BlocklistSelectionTest, ADirectoryInAFilesPlaceIsPassedOver) {
  std::filesystem::create_directories(mHost.Preferences() /
                                      "SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json");
  mHost.Files().Write("application/SystemCompatibilityReport/blocklist.en_US.json", "{}");
  EXPECT_EQ(Place(SelectBlocklistFile()), "application/SystemCompatibilityReport/blocklist.en_US.json");
}

}  // namespace
