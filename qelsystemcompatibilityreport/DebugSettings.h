// The library's debug settings: entries of the host's debug database, for developers and support staff.
#pragma once

#include <array>
#include <string_view>

namespace qelsystemcompatibilityreport {

/// A debug setting: its key, the value that holds when it was never set, and what it does. A setting that is
/// on or off is on only when its value is exactly "true".
struct DebugSetting {
  std::string_view mKey;
  std::string_view mDefaultValue;
  std::string_view mMeaning;
};

/// Every component of a rule's kind is a hit, whatever the rule's name, versions and dependencies.
inline constexpr DebugSetting kForceBlocklistMatch{
    "qelsystemcompatibilityreport.force_blocklist_match", "",
    "\"true\" reports every component of a rule's kind as an issue of the rule"};

/// Rules ignore versions; names still have to match.
inline constexpr DebugSetting kForceBlocklistMatchByName{
    "qelsystemcompatibilityreport.force_blocklist_match_by_name", "",
    "\"true\" makes rules ignore versions; names still have to match"};

/// Runs read the installed blocklist even where a downloaded one is present.
inline constexpr DebugSetting kUseInstalledBlocklist{
    "qelsystemcompatibilityreport.use_installed_blocklist", "false",
    "\"true\" ignores downloaded blocklists and reads the installed one"};

/// How long a background download waits when its caller names no delay. Text that is no number means no
/// delay.
inline constexpr DebugSetting kDownloadDelaySeconds{
    "qelsystemcompatibilityreport.download_delay_secs", "10",
    "seconds that a background download waits before it starts"};

/// Whether the optimizer has optimizations of nothing to show, for demonstrations.
inline constexpr DebugSetting kRegisterDummyAppOptimizations{
    "qelsystemcompatibilityreport.RegisterDummyAppOptimizations", "true",
    "\"false\" leaves the optimizer's demonstrations out"};

/// All settings, in the order in which they are shown.
inline constexpr std::array kAllDebugSettings{kForceBlocklistMatch, kForceBlocklistMatchByName,
                                              kUseInstalledBlocklist, kDownloadDelaySeconds,
                                              kRegisterDummyAppOptimizations};

}  // namespace qelsystemcompatibilityreport
