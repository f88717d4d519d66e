#include "host/qelui/native/Measures.h"

#include <wx/sizer.h>
#include <wx/window.h>

#include <algorithm>

namespace qelui::native {

namespace {

constexpr int kReadingLetters = 72;

}  // namespace

int UsualBorder(const wxWindow& window) {
  return std::max(wxSizerFlags::GetDefaultBorder(), window.GetCharWidth() * 3 / 4);
}

int ReadingWidth(const wxWindow& window) {
  return kReadingLetters * window.GetCharWidth();
}

}  // namespace qelui::native
