// The usual places on this system.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/System.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "tests/support/EnvironmentVariable.h"

namespace {

using qelcore::host::GetDirectories;
using qelcore::host::SetDirectories;

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : std::string();
}

TEST(WindowsPlaces, AreThoseOfTheUser) {
  EXPECT_EQ(GetDirectories().mPreferences, Variable("APPDATA") + "\\scr");
  EXPECT_EQ(GetDirectories().mState, Variable("LOCALAPPDATA") + "\\scr");
  const std::string documents = GetDirectories().mDocuments;
  EXPECT_TRUE(std::filesystem::path(documents).is_absolute()) << documents;
  EXPECT_NE(documents.find(Variable("USERPROFILE").substr(2)), std::string::npos) << documents;
}

TEST(WindowsPlaces, AreTheSystemsWhateverTheEnvironmentSays) {
  const std::string before = GetDirectories().mPreferences;
  const testsupport::EnvironmentVariable variable("APPDATA", "C:\\elsewhere");
  EXPECT_EQ(GetDirectories().mPreferences, before);
}

TEST(WindowsPlaces, TheApplicationIsTheDataOfTheSourceTreeOrBesideTheProgram) {
  wchar_t program[MAX_PATH * 4] = {};
  ASSERT_NE(::GetModuleFileNameW(nullptr, program, MAX_PATH * 4), 0U);
  const std::filesystem::path place = std::filesystem::path(program).parent_path();
  const std::string application = GetDirectories().mApplication;
  EXPECT_TRUE(std::filesystem::path(application).is_absolute()) << application;
  EXPECT_TRUE(application.ends_with("\\data")) << application;
  if (std::filesystem::exists(std::filesystem::path(application) / "SystemCompatibilityReport")) {
    // The data of a directory above the program.
    const std::string above = std::filesystem::path(application).parent_path().string();
    EXPECT_TRUE(place.string().starts_with(above)) << application;
  } else {
    EXPECT_EQ(application, (place / "data").string());
  }
}

TEST(WindowsPlaces, GivenDirectoriesWin) {
  SetDirectories(
      {.mPreferences = "C:\\p", .mApplication = "C:/a", .mDocuments = "C:\\d", .mState = "C:\\s\\"});
  EXPECT_EQ(GetDirectories().mPreferences, "C:\\p");
  EXPECT_EQ(GetDirectories().mApplication, "C:\\a");
  EXPECT_EQ(GetDirectories().mDocuments, "C:\\d");
  EXPECT_EQ(GetDirectories().mState, "C:\\s");
}

TEST(WindowsEnvironment, KnowsTheUser) {
  const qelcore::host::PersonalNames names = qelcore::host::ReadPersonalNames();
  EXPECT_EQ(names.mUser, Variable("USERNAME"));
  EXPECT_FALSE(names.mHost.empty());
  EXPECT_EQ(names.mHome, Variable("USERPROFILE"));
}

TEST(WindowsEnvironment, TheLanguageIsOneThatFilesAreNamedAfter) {
  const std::string language = qelcore::host::EnvironmentLanguage();
  ASSERT_FALSE(language.empty());
  EXPECT_EQ(language.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_"),
            std::string::npos)
      << language;
}

}  // namespace
