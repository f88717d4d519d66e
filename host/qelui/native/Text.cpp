#include "host/qelui/native/Text.h"

#include "platform/qelcore/Text.h"

namespace qelui::native {

wxString ToWx(std::u16string_view text) {
  const std::string utf8 = qelcore::string::UTF16to8(text);
  wxString result = wxString::FromUTF8(utf8.data(), utf8.size());
  // The system's texts would end at a null character.
  result.Replace(wxString(L'\0', 1), wxString(wxUniChar(0xFFFD), 1));
  return result;
}

std::u16string FromWx(const wxString& text) {
  const wxScopedCharBuffer utf8 = text.ToUTF8();
  return qelcore::string::UTF8to16({utf8.data(), utf8.length()});
}

}  // namespace qelui::native
