#include "host/qelui/native/System.h"

#include <wx/access.h>
#include <wx/bitmap.h>
#include <wx/button.h>
#include <wx/dataview.h>
#include <wx/icon.h>
#include <wx/settings.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace qelui::native {

namespace {

#if wxUSE_ACCESSIBILITY

/// Says a name of its own and leaves all else to the system.
class NamedAccessible final : public wxAccessible {
 public:
  NamedAccessible(wxWindow& window, wxString name) : wxAccessible(&window), mName(std::move(name)) {}

  wxAccStatus GetName(int childId, wxString* name) override {
    if (childId != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
    *name = mName;
    return wxACC_OK;
  }

 private:
  wxString mName;
};

#endif

constexpr double kReadableContrast = 4.5;
constexpr unsigned long kLinkOnLight = 0xCC6600;  ///< blue, green, red
constexpr unsigned long kLinkOnDark = 0xFFB46C;

/// The part of a colour as light, 0 to 1.
double Light(unsigned char part) {
  const double fraction = part / 255.0;
  return fraction <= 0.04045 ? fraction / 12.92 : std::pow((fraction + 0.055) / 1.055, 2.4);
}

double RelativeLuminance(const wxColour& color) {
  return 0.2126 * Light(color.Red()) + 0.7152 * Light(color.Green()) + 0.0722 * Light(color.Blue());
}

/// How much two colours differ, 1 to 21, as the guidelines for accessible content measure it.
double Contrast(const wxColour& one, const wxColour& other) {
  const auto [darker, lighter] = std::minmax({RelativeLuminance(one), RelativeLuminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace

SystemMessages::SystemMessages() = default;

SystemMessages::~SystemMessages() = default;

void PrepareSystem() {}

void SetDefaultDirection(bool /*isRightToLeft*/) {}

void SetAccessibleName(wxWindow& window, const wxString& name) {
#if wxUSE_ACCESSIBILITY
  window.SetAccessible(new NamedAccessible(window, name));
#else
  window.SetName(name);
#endif
}

void MarkAsDialog(wxWindow& /*window*/) {}

void MakeLookLikeLink(wxButton& button) {
  const wxColour background = button.GetParent()->GetBackgroundColour();
  wxColour color = wxSystemSettings::GetColour(wxSYS_COLOUR_HOTLIGHT);
  // Themes forget this colour, and the usual one is made for light windows.
  if (Contrast(color, background) < kReadableContrast) {
    color = background.GetLuminance() < 0.5 ? wxColour(kLinkOnDark) : wxColour(kLinkOnLight);
  }
  button.SetForegroundColour(color);
  button.SetFont(button.GetFont().Underlined());
}

void ShowScrollBarsAlways(wxWindow& /*window*/) {}

void ScrollToTop(wxDataViewCtrl& tree) {
  wxDataViewItemArray rows;
  if (tree.GetModel()->GetChildren({}, rows) > 0) tree.EnsureVisible(rows.front());
}

void ClearHiddenCheckMarks(wxDataViewColumn& /*column*/) {}

// The list tells screen readers the texts of the whole row.
void SetCheckBoxName(wxDataViewCtrl& /*tree*/, int /*row*/, const wxString& /*name*/) {}

// By the icon's own name: the newer way to ask for it answers with a sheet of paper on some systems.
wxImage GetMessagePicture(IconKind kind) {
  const wxIcon icon(kind == IconKind::kWarning ? "wxICON_WARNING" : "wxICON_ERROR",
                    wxBITMAP_TYPE_ICO_RESOURCE);
  return wxBitmap(icon).ConvertToImage();
}

void* GetSystemHandle(wxWindow& window) {
  return window.GetHandle();
}

}  // namespace qelui::native
