#pragma once

#include <memory>

#include "host/qelui/native/NativeControl.h"
#include "host/qelui/native/WidthCache.h"

namespace qelui::native {

class TextControl final : public ControlOf<StaticText> {
 public:
  TextControl(ControlHost& host, wxWindow& parent, const std::u16string& text);

  void SetText(const std::u16string& text) override;
  void SetColor(const Color& color) override;
  void SetFontStyle(FontStyle style) override;

  [[nodiscard]] bool HasSelection() { return mText->HasSelection(); }

  [[nodiscard]] wxString GetReadableText() const override { return mContent; }
  [[nodiscard]] int GetMinimumWidth() override;
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;
  [[nodiscard]] bool FillsWidth() const override { return true; }

 private:
  TextControl(ControlHost& host, std::unique_ptr<SelectableText> text);
  void Forget();

  std::unique_ptr<SelectableText> mText;
  wxString mContent;
  std::optional<int> mWidth;
  WidthCache mHeights;
};

}  // namespace qelui::native
