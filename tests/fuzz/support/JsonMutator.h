// Changes to JSON texts that leave them JSON, so that a target's inputs get past the parser.
//
// Linked into the targets that read documents, where the fuzzer calls it: most changes are made to the tree,
// some to the bytes, since what is no JSON has to be refused as well.
#pragma once

#include <span>
#include <string_view>

namespace fuzz {

/// The keys and texts that mean something to the target's reader. Each target that links the mutator defines
/// it.
[[nodiscard]] std::span<const std::string_view> JsonVocabulary();

}  // namespace fuzz
