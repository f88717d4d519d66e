#include "host/qelui/native/TextControl.h"

#include <wx/window.h>

#include <algorithm>
#include <utility>

namespace qelui::native {

namespace {

/// Narrower than that many letters a wrapped text cannot be read.
constexpr int kLeastLetters = 16;

}  // namespace

TextControl::TextControl(ControlHost& host, wxWindow& parent, const std::u16string& text)
    : TextControl(host, MakeSelectableText(parent)) {
  SetText(text);
}

TextControl::TextControl(ControlHost& host, std::unique_ptr<SelectableText> text)
    : ControlOf<StaticText>(host, &text->GetWindow()), mText(std::move(text)) {}

void TextControl::SetText(const std::u16string& text) {
  mContent = ToWx(text);
  mText->SetText(mContent);
  Forget();
}

void TextControl::SetColor(const Color& color) {
  mText->SetColor(color);
}

void TextControl::SetFontStyle(FontStyle style) {
  mText->SetFontStyle(style);
  Forget();
}

void TextControl::Forget() {
  mWidth.reset();
  mHeights.Forget();
  ContentChanged();
}

int TextControl::GetMinimumWidth() {
  return std::min(GetPreferredWidth(), kLeastLetters * GetWindow().GetCharWidth());
}

int TextControl::GetPreferredWidth() {
  if (!mWidth) mWidth = mText->MeasureWidth();
  return *mWidth;
}

int TextControl::GetPreferredHeight(int width) {
  return mHeights.Get(width, [&] { return mText->MeasureHeight(width); });
}

}  // namespace qelui::native
