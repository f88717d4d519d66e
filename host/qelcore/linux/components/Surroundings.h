// What a reading of the machine needs besides files: on the running machine it comes from the process, in a
// replay of a recorded machine from the record.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "host/qelcore/linux/components/Drivers.h"

namespace qelcore::host::components {

struct Surroundings {
  using Environment = std::map<std::string, std::string, std::less<>>;

  /// The variable's value; empty when it is not set.
  [[nodiscard]] std::string Variable(std::string_view name) const {
    const auto place = mEnvironment.find(name);
    return place == mEnvironment.end() ? std::string() : place->second;
  }

  Environment mEnvironment;   ///< at least the variables of `kVariables`, as far as they are set
  std::string mArchitecture;  ///< "x86_64"
  std::optional<std::uint64_t> mFreeBytes;  ///< free for the user on the disk of the preferences directory
  NetworkDriverQuery mAskNetworkDriver;     ///< may be empty
};

/// The environment variables that properties are made from. No other is ever looked at.
inline constexpr std::array<std::string_view, 7> kVariables{
    "DISPLAY", "LANG", "LC_ALL", "LC_MESSAGES", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE"};

/// The surroundings of this process, without the free space.
[[nodiscard]] Surroundings SurroundingsOfThisProcess();

}  // namespace qelcore::host::components
