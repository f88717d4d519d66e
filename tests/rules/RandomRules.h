// Random rules and machines that have much to do with each other.
#pragma once

#include <rapidcheck.h>

#include <string>

namespace testsupport {

/// A rule's JSON text: now and then malformed, often about what `AnyMachine` makes.
[[nodiscard]] rc::Gen<std::string> AnyRule();

/// A machine's JSON text: {"components": [...], "files": [{"path", "version"}...]}.
[[nodiscard]] rc::Gen<std::string> AnyMachine();

}  // namespace testsupport
