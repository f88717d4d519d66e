// What a fuzz target holds against its answers.
#pragma once

#include <string_view>

namespace fuzz {

/// Ends the process, naming the promise, when it does not hold. The input stays behind, as after any crash.
void Require(bool holds, std::string_view promise);

}  // namespace fuzz
