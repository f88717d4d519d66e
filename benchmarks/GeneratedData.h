// Large blocklists and machines, drawn from a table of names: the same numbers give the same bytes
// everywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace benchmarks {

/// A blocklist document. Of its rules about 70 in 100 are names as devices have them, brackets included, 25
/// are expressions, 5 are about files and properties; some have masks, moduli, lists of ranges and
/// dependencies. `malformed` adds expressions that cannot be compiled and values that decide nothing.
[[nodiscard]] std::string GenerateBlocklist(std::size_t ruleCount, std::uint64_t seed,
                                            bool malformed = false);

/// A snapshot of a machine, with files.
[[nodiscard]] std::string GenerateMachine(std::size_t componentCount, std::uint64_t seed);

}  // namespace benchmarks
