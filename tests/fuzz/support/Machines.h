// The machine that a target matches against: some fixed components, and those that the input brings along.
#pragma once

#include <any>
#include <map>
#include <string>

#include "platform/qelcore/Components.h"
#include "tests/support/NaiveMatcher.h"

namespace fuzz {

/// The files that the machine has, and their versions. No other path exists.
[[nodiscard]] const std::map<std::string, std::string, std::less<>>& MachineFiles();

/// The fixed components, and after them the elements of the document's "components" that can be read, at
/// most 16. A blocklist's reader ignores that key.
[[nodiscard]] qelcore::utility::OSComponentRegistry ReadMachine(const std::any& document);

/// The same machine as the naive matcher sees it.
[[nodiscard]] testsupport::NaiveMachine NaiveMachineOf(const qelcore::utility::OSComponentRegistry& registry);

/// Whether the naive matcher can be given the rule: its expressions repeat at most one thing, and nothing is
/// nested deeply, so that the default engine ends soon, and answers as the bounded one does.
[[nodiscard]] bool IsHarmless(const testsupport::NaiveRule& rule);

}  // namespace fuzz
