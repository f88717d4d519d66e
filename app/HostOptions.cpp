#include "app/HostOptions.h"

#include <regex>

#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Paths.h"
#include "host/qelcore/HostSetup.h"

namespace app {

namespace host = qelcore::host;

namespace {

/// Errors are recorded even when nobody asked for a trace.
constexpr int kTraceErrors = 1;

#if defined(_WIN32)
constexpr const char* kUsualPlace = R"(%APPDATA%\scr)";
#else
constexpr const char* kUsualPlace = "~/.config/scr";
#endif

/// The path that an option names; empty when the option was not given.
std::string DirectoryOf(const char* option, const std::optional<std::string>& path) {
  if (!path) return {};
  if (path->empty()) throw UserError(std::string(option) + ": the name of a directory is missing");
  return ToUTF8(ToPath(AbsolutePath(*path)).lexically_normal());
}

void CheckLanguage(const std::string& language) {
  // The code becomes part of file names, so nothing but a code may pass.
  static const std::regex form("[A-Za-z]{2,3}(_[A-Za-z0-9]{2,4})?");
  if (!std::regex_match(language, form)) {
    throw UserError("--language " + language + ": not a language code; write it like en_US or de_DE");
  }
}

}  // namespace

void HostOptions::AddTo(CLI::App& application) {
  application
      .add_option(
          "--pref-dir", mPreferencesDirectory,
          std::string("Directory of preferences, remembered state and log (usually ") + kUsualPlace + ")")
      ->type_name("DIR");
  application
      .add_option("--app-dir", mApplicationDirectory,
                  "Directory of the installed blocklists and translations")
      ->type_name("DIR");
  application.add_option("--language", mLanguage, "Language of texts and blocklist, such as de_DE")
      ->type_name("CODE");
  application
      .add_option("--trace", mTraceLevel,
                  "Show trace messages on standard error: 1 errors, 5 also warnings, 6 also details")
      ->check(CLI::Range(0, 6))
      ->option_text("LEVEL");
  application.add_option("--set", mSettings, "Debug setting for this run only (may be repeated)")
      ->option_text("KEY=VALUE")
      ->take_all()
      ->allow_extra_args(false);
}

void HostOptions::SetUpHost() const {
  if (mLanguage) CheckLanguage(*mLanguage);
  const std::string preferences = DirectoryOf("--pref-dir", mPreferencesDirectory);
  // The log goes with the preferences, so that a run with a directory of its own leaves the user's alone.
  host::SetDirectories({.mPreferences = preferences,
                        .mApplication = DirectoryOf("--app-dir", mApplicationDirectory),
                        .mDocuments = {},
                        .mState = preferences});
  if (mLanguage) host::SetApplicationLanguage(*mLanguage);
  host::SetTraceLevel(std::max(kTraceErrors, mTraceLevel), mTraceLevel > 0);
  for (const std::string& setting : mSettings) {
    const std::size_t equals = setting.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw UserError("--set " + setting + ": write it as KEY=VALUE; \"scr settings\" lists the keys");
    }
    host::SetDebugEntryForThisRun(setting.substr(0, equals), setting.substr(equals + 1));
  }
  host::SetApplicationVersion(QELSCR_VERSION_MAJOR, QELSCR_VERSION_MINOR);
  const Diagnostics diagnostics;
  if (!host::BeginProcess())
    throw UserError("a part of the program could not be started; --trace 1 tells which");
  diagnostics.PrintProblems();
}

}  // namespace app
