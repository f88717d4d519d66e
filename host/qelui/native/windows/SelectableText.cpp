#include <wx/scrolwin.h>
#include <wx/settings.h>
#include <wx/textctrl.h>
#include <wx/tokenzr.h>

#include <algorithm>
#include <cmath>

#include "host/qelui/native/Measures.h"
#include "host/qelui/native/System.h"

namespace qelui::native {

namespace {

/// What the system's text field keeps free at each side of its text.
constexpr int kMargin = 4;

unsigned char ColorPart(double fraction) {
  return static_cast<unsigned char>(std::lround(std::clamp(fraction, 0.0, 1.0) * 255));
}

/// A text field that cannot be written into and looks like plain text.
class FieldText final : public SelectableText {
 public:
  explicit FieldText(wxWindow& parent)
      : mField(new wxTextCtrl(&parent, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                              wxTE_MULTILINE | wxTE_READONLY | wxTE_NO_VSCROLL | wxBORDER_NONE)),
        mPlainFont(mField->GetFont()) {
    mField->SetBackgroundColour(parent.GetBackgroundColour());
    AlignWithOthers();
    // The field has nothing to scroll and must not keep the wheel from what is around it.
    mField->Bind(wxEVT_MOUSEWHEEL, [this](wxMouseEvent& event) { PassOn(event); });
  }

  wxWindow& GetWindow() override { return *mField; }

  void SetText(const wxString& text) override { mField->ChangeValue(text); }

  void SetColor(const Color& color) override {
    mField->SetForegroundColour(
        {ColorPart(color.mRed), ColorPart(color.mGreen), ColorPart(color.mBlue), ColorPart(color.mOpacity)});
  }

  void SetFontStyle(FontStyle style) override {
    wxFont font = mPlainFont;
    if (style != FontStyle::kPlain) font.MakeBold();
    if (style == FontStyle::kTitle) font.Scale(static_cast<float>(kTitleScale));
    mField->SetFont(font);
    AlignWithOthers();
  }

  int MeasureWidth() override {
    int widest = 0;
    wxStringTokenizer lines(mField->GetValue(), "\n");
    while (lines.HasMoreTokens())
      widest = std::max(widest, mField->GetTextExtent(lines.GetNextToken()).GetWidth());
    return widest + 2 * kMargin;
  }

  // The field itself knows best where it breaks lines.
  int MeasureHeight(int width) override {
    const wxSize before = mField->GetSize();
    const int line = mField->GetCharHeight();
    mField->SetSize(width, std::max(before.GetHeight(), line));
    const int height = std::max(1, mField->GetNumberOfLines()) * line;
    mField->SetSize(before);
    return height;
  }

  bool HasSelection() override {
    long begin = 0;
    long end = 0;
    mField->GetSelection(&begin, &end);
    return begin != end;
  }

 private:
  // A new font brings margins of its own, and texts of different fonts would not begin at one line.
  void AlignWithOthers() { mField->SetMargins(0); }

  void PassOn(wxMouseEvent& event) {
    wxWindow* outer = mField->GetParent();
    while (outer != nullptr && dynamic_cast<wxScrolledWindow*>(outer) == nullptr) outer = outer->GetParent();
    if (outer != nullptr) outer->HandleWindowEvent(event);
  }

  wxTextCtrl* mField;
  wxFont mPlainFont;
};

}  // namespace

std::unique_ptr<SelectableText> MakeSelectableText(wxWindow& parent) {
  return std::make_unique<FieldText>(parent);
}

}  // namespace qelui::native
