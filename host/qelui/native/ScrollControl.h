#pragma once

#include "host/qelui/native/ScrollArea.h"

namespace qelui::native {

class ScrollControl final : public ControlOf<ScrollView> {
 public:
  ScrollControl(ControlHost& host, wxWindow& parent, const std::u16string& name);

  View& GetContentView() override { return mArea->GetView(); }
  Size MeasureContent() override;
  void SetScrollBarSize(const Size& contentSize) override;
  void ScrollIntoView(const Control& control) override;
  void Update() override;

  [[nodiscard]] ViewControl& GetContent() const { return mArea->GetView(); }
  [[nodiscard]] ScrollArea& GetArea() const { return *mArea; }

  [[nodiscard]] int GetMinimumWidth() override;
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;
  [[nodiscard]] int GetMinimumHeight(int width) override;
  [[nodiscard]] bool TakesWidth() const override { return true; }
  [[nodiscard]] bool TakesHeight() const override { return true; }
  void Place(const Rectangle& rectangle) override;

 private:
  ScrollControl(ControlHost& host, std::unique_ptr<ScrollArea> area);
  void ContentChanged() override;

  std::unique_ptr<ScrollArea> mArea;
  Rectangle mPlaced;
  bool mIsStale = true;
};

}  // namespace qelui::native
