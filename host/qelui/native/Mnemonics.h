// Which letter of a button's caption chooses it together with the Alt key.
#pragma once

#include <wx/string.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace qelui::native {

/// For each caption the index of its letter. A caption that occurs twice has none, nor has one all of whose
/// letters are taken: the first letters of words are given away before others, in the order of the captions.
[[nodiscard]] std::vector<std::optional<std::size_t>> ChooseMnemonics(const std::vector<wxString>& captions);

}  // namespace qelui::native
