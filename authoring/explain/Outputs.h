// The forms in which an explanation is told. docs/formats/explain-json.md describes the second.
#pragma once

#include <string>
#include <vector>

#include "authoring/explain/Explain.h"

namespace authoring {

/// What was explained, for the head of either form.
struct ExplainHead {
  std::string mBlocklist;  ///< as the user named it
  std::string mMachine;    ///< likewise, or "this machine"
};

/// The lines for a person. Texts of the blocklist and the machine stand in them as they are.
[[nodiscard]] std::vector<std::string> DescribeAsText(const Explained& explained, const ExplainHead& head);

/// One JSON document on one line.
[[nodiscard]] std::string WriteJson(const Explained& explained, const ExplainHead& head);

}  // namespace authoring
