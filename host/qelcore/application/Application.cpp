#include "host/qelcore/application/Application.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/System.h"
#include "platform/qelcore/Localisation.h"

namespace qelcore {

namespace {

constexpr const char* kDefaultLanguage = "en_US";

struct Settings {
  std::mutex mMutex;
  host::Directories mDirectories;
  std::u16string mName = u"System Compatibility Report";
  std::string mLanguage;
  std::optional<host::ApplicationVersion> mVersion;
};

Settings& TheSettings() {
  // Never destroyed, because static objects of other libraries may ask while the process ends.
  static Settings& settings = *new Settings;
  return settings;
}

template <typename Value>
Value Get(Value Settings::*member) {
  Settings& settings = TheSettings();
  const std::lock_guard lock(settings.mMutex);
  return settings.*member;
}

template <typename Value>
void Set(Value Settings::*member, Value value) {
  Settings& settings = TheSettings();
  const std::lock_guard lock(settings.mMutex);
  settings.*member = std::move(value);
}

/// The path from the root down, so that a walk up from it always ends there.
std::string Absolute(const std::string& path) {
  if (path.empty()) {
    return {};
  }
  const std::filesystem::path given(std::u8string(path.begin(), path.end()));
  std::filesystem::path absolute = std::filesystem::absolute(given).lexically_normal();
  if (!absolute.has_filename() && absolute.has_relative_path()) {
    absolute = absolute.parent_path();
  }
  const std::u8string text = absolute.u8string();
  return {text.begin(), text.end()};
}

std::string DirectoryOr(std::string host::Directories::*member, std::string (*usual)()) {
  std::string path = Get(&Settings::mDirectories).*member;
  return path.empty() ? usual() : path;
}

/// Whether the text can be a language. It becomes part of file names, so nothing else may pass.
bool IsLanguage(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '-';
  });
}

}  // namespace

namespace host {

void SetDirectories(const Directories& directories) {
  Set(&Settings::mDirectories, Directories{.mPreferences = Absolute(directories.mPreferences),
                                           .mApplication = Absolute(directories.mApplication),
                                           .mDocuments = Absolute(directories.mDocuments),
                                           .mState = Absolute(directories.mState)});
}

Directories GetDirectories() {
  return {.mPreferences = PreferencesDirectory(),
          .mApplication = ApplicationDirectory(),
          .mDocuments = DocumentsDirectory(),
          .mState = StateDirectory()};
}

std::string PreferencesDirectory() {
  return DirectoryOr(&Directories::mPreferences, UsualPreferencesDirectory);
}

std::string ApplicationDirectory() {
  return DirectoryOr(&Directories::mApplication, UsualApplicationDirectory);
}

std::string DocumentsDirectory() {
  return DirectoryOr(&Directories::mDocuments, UsualDocumentsDirectory);
}

std::string StateDirectory() {
  return DirectoryOr(&Directories::mState, UsualStateDirectory);
}

void SetApplicationName(std::u16string name) {
  Set(&Settings::mName, std::move(name));
}

void SetApplicationLanguage(std::string language) {
  Set(&Settings::mLanguage, std::move(language));
}

void SetApplicationVersion(std::int32_t major, std::int32_t minor) {
  Set(&Settings::mVersion, std::optional(ApplicationVersion{major, minor}));
}

std::optional<ApplicationVersion> GetApplicationVersion() {
  return Get(&Settings::mVersion);
}

}  // namespace host

std::string Locale::ApplicationLanguage() {
  for (std::string language : {Get(&Settings::mLanguage), host::EnvironmentLanguage()}) {
    if (IsLanguage(language)) {
      return language;
    }
  }
  return kDefaultLanguage;
}

std::u16string GetApplicationName() {
  return Get(&Settings::mName);
}

}  // namespace qelcore
