// The forms in which findings are told. docs/lint.md describes them.
#pragma once

#include <string>
#include <vector>

#include "authoring/findings/Finding.h"

namespace authoring {

/// The lines about one finding. Texts of the blocklist stand in them as they are.
[[nodiscard]] std::vector<std::string> DescribeAsText(const Finding& finding);

/// "2 errors, 1 warning", or "no findings".
[[nodiscard]] std::string Summarise(const Findings& findings);

/// One JSON document on one line.
[[nodiscard]] std::string WriteJson(const Findings& findings);

/// One SARIF 2.1.0 log. `version` is the program's.
[[nodiscard]] std::string WriteSarif(const Findings& findings, const std::string& version);

}  // namespace authoring
