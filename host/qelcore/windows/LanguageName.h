// Names of languages as the system writes them.
#pragma once

#include <string>
#include <string_view>

namespace qelcore::host {

/// The language and the region of a name such as "de-DE", "zh-Hans-CN" or "sr-Latn-RS" joined by "_":
/// "de_DE", "zh_CN", "sr_RS"; the language alone when the name has no region.
[[nodiscard]] std::string LanguageFromName(std::string_view name);

}  // namespace qelcore::host
