// `scr settings`: the debug settings.
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <system_error>

#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"

namespace app {

namespace host = qelcore::host;
using qelsystemcompatibilityreport::DebugSetting;

namespace {

/// Settings of the reference host, beside the library's own.
constexpr DebugSetting kHostSettings[] = {
    {"qelsystemcompatibilityreport.properties", "true",
     "\"false\" leaves system properties and the rules about them out"},
    {qelappsupport::host::kRecordAnalyticsSetting, "true",
     "\"false\" keeps events from being recorded on this machine"},
    {qelcore::host::kRecordStatisticsSetting, "true",
     "\"false\" keeps usage statistics from being recorded on this machine"},
    {qelnet::host::kLargestDownloadSetting, "67108864",
     "bytes that a download may have at most, 1024 to 67108864; what is no number counts as the default"}};

std::vector<DebugSetting> KnownSettings() {
  std::vector<DebugSetting> settings(qelsystemcompatibilityreport::kAllDebugSettings.begin(),
                                     qelsystemcompatibilityreport::kAllDebugSettings.end());
  settings.insert(settings.end(), std::begin(kHostSettings), std::end(kHostSettings));
  return settings;
}

std::optional<DebugSetting> FindSetting(std::string_view key) {
  const auto settings = KnownSettings();
  const auto found = std::find_if(settings.begin(), settings.end(),
                                  [&](const DebugSetting& setting) { return setting.mKey == key; });
  if (found == settings.end()) return std::nullopt;
  return *found;
}

std::string Quoted(std::string_view text) {
  return "\"" + Printable(text) + "\"";
}

std::string Describe(const DebugSetting& setting) {
  const std::string value = qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue);
  return fmt::format("{} = {}{}\n    {} (default {})\n", setting.mKey, Quoted(value),
                     value == setting.mDefaultValue ? "" : "  [changed]", setting.mMeaning,
                     Quoted(setting.mDefaultValue));
}

/// The description as users read it: the localised text, without the note to translators behind it.
std::string Describe(const qelappsupport::host::BetaFeatureDescription& feature) {
  const std::string text = qelcore::string::UTF16to8(qelcore::Localise(feature.mDescription));
  return fmt::format("\nbeta feature {} is {}\n    {} ({})\n", feature.mName,
                     qelappsupport::IsFeatureEnabled(feature.mName) ? "on" : "off",
                     Printable(std::string_view(text).substr(0, text.find("#{comment}"))), feature.mTicket);
}

void ListSettings() {
  std::string text;
  for (const DebugSetting& setting : KnownSettings()) text += Describe(setting);
  for (const auto& [key, value] : host::GetDebugEntries()) {
    if (FindSetting(key)) continue;
    text +=
        fmt::format("{} = {}  [changed]\n    not a setting of this program\n", Printable(key), Quoted(value));
  }
  for (const auto& feature : qelappsupport::host::GetBetaFeatures()) text += Describe(feature);
  Print(text);
}

DebugSetting RequireSetting(const std::string& key) {
  const auto setting = FindSetting(key);
  if (!setting) throw UserError(key + ": there is no such setting; \"scr settings\" lists them all");
  return *setting;
}

void ShowOrSave(const std::string& argument) {
  const std::size_t equals = argument.find('=');
  const DebugSetting setting = RequireSetting(argument.substr(0, equals));
  if (equals != std::string::npos) host::SaveDebugEntry(setting.mKey, argument.substr(equals + 1));
  Print(Describe(setting));
}

void Reset(const std::string& key) {
  // A key that no program knows may still stand in the file, and must be possible to get rid of.
  if (!host::RemoveDebugEntry(key)) static_cast<void>(RequireSetting(key));
  if (const auto setting = FindSetting(key)) Print(Describe(*setting));
}

struct Arguments {
  std::string mSetting;
  std::string mReset;
};

}  // namespace

void AddSettingsVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("settings", "Debug settings");
  verb->group("Verbs")->footer(
      "Debug settings, for developers and support staff. They are saved in the preferences directory.\n"
      "\n"
      "  scr settings                   lists them\n"
      "  scr settings KEY               shows one\n"
      "  scr settings KEY=VALUE         changes one\n"
      "  scr settings --reset KEY       brings its default back\n"
      "  scr --set KEY=VALUE report     changes one for a single run\n");
  const auto arguments = std::make_shared<Arguments>();
  CLI::Option* const setting =
      verb->add_option("SETTING", arguments->mSetting, "Setting to show or to change")
          ->option_text("KEY[=VALUE]");
  verb->add_option("--reset", arguments->mReset, "Setting to bring back to its default")
      ->excludes(setting)
      ->option_text("KEY");
  verb->callback([arguments] {
    const Diagnostics diagnostics;
    if (!arguments->mReset.empty()) {
      Reset(arguments->mReset);
    } else if (!arguments->mSetting.empty()) {
      ShowOrSave(arguments->mSetting);
    } else {
      ListSettings();
    }
    diagnostics.PrintProblems();
  });
}

}  // namespace app
