// Texts between the contract and wxWidgets.
#pragma once

#include <wx/string.h>

#include <string>
#include <string_view>

namespace qelui::native {

/// Half a character pair and the null character become U+FFFD.
[[nodiscard]] wxString ToWx(std::u16string_view text);

[[nodiscard]] std::u16string FromWx(const wxString& text);

}  // namespace qelui::native
