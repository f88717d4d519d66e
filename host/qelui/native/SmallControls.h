// The controls that only show something: icons and the turning circle.
#pragma once

#include <memory>

#include "host/qelui/native/NativeControl.h"

class wxActivityIndicator;
class wxBitmapBundle;

namespace qelui::native {

class IconControl final : public ControlOf<Icon> {
 public:
  IconControl(ControlHost& host, wxWindow& parent, IconKind kind, const std::u16string& name);

  [[nodiscard]] int GetMinimumWidth() override;
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;
  /// Beside the beginning of a long text, not far below it.
  [[nodiscard]] bool StandsAtTop() const override { return true; }

 private:
  using Picture = std::shared_ptr<const wxBitmapBundle>;

  IconControl(ControlHost& host, wxWindow& parent, Picture picture);

  Picture mPicture;  ///< shared with the other icons of its kind
};

class ProgressControl final : public ControlOf<ProgressIndicator> {
 public:
  ProgressControl(ControlHost& host, wxWindow& parent, const std::u16string& name);

  [[nodiscard]] int GetMinimumWidth() override;
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;

 private:
  void ShownChanged() override;

  wxActivityIndicator* mIndicator;
};

/// Room that takes the place that is left.
class Space final : public LayoutItem {
 public:
  explicit Space(Direction direction) : mDirection(direction) {}

  [[nodiscard]] bool IsShown() const override { return true; }
  [[nodiscard]] int GetMinimumWidth() override { return 0; }
  [[nodiscard]] int GetPreferredWidth() override { return 0; }
  [[nodiscard]] int GetPreferredHeight(int /*width*/) override { return 0; }
  [[nodiscard]] bool TakesWidth() const override { return mDirection == Direction::kAcross; }
  [[nodiscard]] bool TakesHeight() const override { return mDirection == Direction::kDown; }
  void Place(const Rectangle& /*rectangle*/) override {}

 private:
  Direction mDirection;
};

}  // namespace qelui::native
