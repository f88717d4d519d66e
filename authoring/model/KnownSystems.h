// The systems that hosts list, as far as they are known, and what a name says about them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace authoring {

/// The name of the one component of kind "OS" of every Windows.
inline constexpr std::string_view kWindows = "Windows";

/// The name of a system that `name` differs from in upper and lower case only; nothing when the name is right
/// or is not known.
[[nodiscard]] std::optional<std::string_view> SystemInOtherCase(std::string_view name);

/// Whether the text holds "windows" in any case.
[[nodiscard]] bool SpeaksOfWindows(std::string_view name);

/// Which systems a rule of kind "OS" with this name may hit. A "no" is certain, as far as systems are known.
struct SystemsOfName {
  bool mMayBeWindows = true;
  bool mMayBeAnother = true;
};

/// Asks the library's engine: main thread only.
[[nodiscard]] SystemsOfName SystemsOf(const std::string& name);

}  // namespace authoring
