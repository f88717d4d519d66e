// One thing that `scr lint` found.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "authoring/findings/Code.h"
#include "authoring/json/TextPlaces.h"

namespace authoring {

struct Finding {
  Code mCode = Code::kNotJson;
  std::string mFile;
  Place mPlace;
  std::optional<std::size_t> mRule;  ///< the element of "blocklist", counted from 0
  std::string mRuleName;
  std::string mWhat;  ///< what is wrong, without a full stop
  std::string mMend;  ///< what to do, a sentence; empty when that is said already
};

using Findings = std::vector<Finding>;

/// Whether one of them is an error.
[[nodiscard]] bool HasErrors(const Findings& findings);

/// How many are of this severity.
[[nodiscard]] std::size_t Count(const Findings& findings, Severity severity);

}  // namespace authoring
