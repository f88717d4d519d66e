// The text report once more, as plain as it can be, to compare the real one with.
#pragma once

#include <string>
#include <vector>

#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace fuzz {

/// The report in English, with no debug setting changed and no section added.
[[nodiscard]] std::string PlainReport(const qelcore::utility::OSComponentRegistry& registry,
                                      const std::vector<qelsystemcompatibilityreport::SCRIssue>& issues);

}  // namespace fuzz
