// Controls without a screen: they keep what they are told, and a test chooses them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/qelui.h"
#include "tests/support/HostCalls.h"

namespace testsupport {

/// What every recorded control has in common.
struct RecordedState {
  bool mIsVisible = true;
  std::u16string mAccessibleName;
};

/// `Interface` is one of the toolkit's controls.
template <typename Interface>
class RecordedControl : public Interface, public RecordedState {
 public:
  void SetVisible(bool visible) override {
    OnHostCall("Control::SetVisible");
    mIsVisible = visible;
  }
  void SetAccessibleName(const std::u16string& name) override {
    OnHostCall("Control::SetAccessibleName");
    mAccessibleName = name;
  }
};

class RecordedText final : public RecordedControl<qelui::StaticText> {
 public:
  void SetText(const std::u16string& text) override {
    OnHostCall("StaticText::SetText");
    mText = text;
  }
  void SetColor(const qelui::Color& color) override {
    OnHostCall("StaticText::SetColor");
    mColor = color;
  }
  void SetFontStyle(qelui::FontStyle style) override {
    OnHostCall("StaticText::SetFontStyle");
    mStyle = style;
  }

  std::u16string mText;
  std::optional<qelui::Color> mColor;
  qelui::FontStyle mStyle = qelui::FontStyle::kPlain;
};

class RecordedIcon final : public RecordedControl<qelui::Icon> {
 public:
  qelui::IconKind mKind = qelui::IconKind::kInformation;
};

class RecordedProgress final : public RecordedControl<qelui::ProgressIndicator> {};

class RecordedDialog;

class RecordedButton final : public RecordedControl<qelui::Button> {
 public:
  void SetCaption(const std::u16string& caption) override {
    OnHostCall("Button::SetCaption");
    mCaption = caption;
  }
  void SetWidth(int width) override {
    OnHostCall("Button::SetWidth");
    mWidth = width;
  }
  void SetActive(bool active) override {
    OnHostCall("Button::SetActive");
    mIsActive = active;
  }
  void SetAction(qelui::Action action) override {
    OnHostCall("Button::SetAction");
    mAction = std::move(action);
  }

  std::u16string mCaption;
  bool mIsHotText = false;
  int mWidth = 0;
  bool mIsActive = true;
  qelui::Action mAction;
};

class RecordedTree final : public RecordedControl<qelui::Tree> {
 public:
  void SetRows(std::vector<qelui::TreeRow> rows) override {
    OnHostCall("Tree::SetRows");
    mRows = std::move(rows);
  }
  void SetOnCheck(std::function<void(std::size_t, bool)> onCheck) override {
    OnHostCall("Tree::SetOnCheck");
    mOnCheck = std::move(onCheck);
  }
  void ScrollToTop() override {
    OnHostCall("Tree::ScrollToTop");
    ++mTimesScrolledToTop;
  }

  /// As the user does it.
  void Check(std::size_t row, bool isChecked) {
    mRows.at(row).mIsChecked = isChecked;
    mOnCheck(row, isChecked);
  }

  std::size_t mColumnCount = 0;
  std::vector<qelui::TreeRow> mRows;
  int mTimesScrolledToTop = 0;
  std::function<void(std::size_t, bool)> mOnCheck;
};

class RecordedScrollView;

/// Owns its controls, each kind in a list of its own, and all of them in their order in `mOrder`.
class RecordedView final : public RecordedControl<qelui::View> {
 public:
  qelui::StaticText& AddText(const std::u16string& text) override;
  qelui::Icon& AddIcon(qelui::IconKind kind, const std::u16string& name) override;
  qelui::Button& AddButton(const std::u16string& caption) override;
  qelui::Button& AddHotText(const std::u16string& caption) override;
  qelui::ProgressIndicator& AddProgressIndicator(const std::u16string& name) override;
  qelui::Tree& AddTree(std::size_t columnCount, const std::u16string& name) override;
  qelui::View& AddView(qelui::Direction direction) override;
  qelui::ScrollView& AddScrollView(const std::u16string& name) override;
  void AddSpace() override { OnHostCall("View::AddSpace"); }
  void SetTakesSpace(bool takesSpace) override {
    OnHostCall("View::SetTakesSpace");
    mTakesSpace = takesSpace;
  }
  void SetHasBorder(bool hasBorder) override {
    OnHostCall("View::SetHasBorder");
    mHasBorder = hasBorder;
  }

  bool mTakesSpace = false;
  bool mHasBorder = false;
  std::vector<std::unique_ptr<qelui::Control>> mOrder;

 private:
  template <typename Recorded>
  Recorded& Add();
};

class RecordedScrollView final : public RecordedControl<qelui::ScrollView> {
 public:
  [[nodiscard]] qelui::View& GetContentView() override {
    OnHostCall("ScrollView::GetContentView");
    return mContent;
  }
  /// A unit for each control of the first level.
  [[nodiscard]] qelui::Size MeasureContent() override {
    OnHostCall("ScrollView::MeasureContent");
    return {100, static_cast<int>(mContent.mOrder.size())};
  }
  void SetScrollBarSize(const qelui::Size& contentSize) override {
    OnHostCall("ScrollView::SetScrollBarSize");
    mCalls.emplace_back("SetScrollBarSize");
    mScrollBarSize = contentSize;
  }
  void ScrollIntoView(const qelui::Control& control) override {
    OnHostCall("ScrollView::ScrollIntoView");
    mCalls.emplace_back("ScrollIntoView");
    mShown = &control;
  }
  void Update() override {
    OnHostCall("ScrollView::Update");
    mCalls.emplace_back("Update");
  }

  RecordedView mContent;
  qelui::Size mScrollBarSize;
  const qelui::Control* mShown = nullptr;
  std::vector<std::string> mCalls;  ///< what was asked for, in its order
};

/// All controls of a kind below a view, in their order, those of hidden views included.
template <typename Recorded>
std::vector<Recorded*> AllOf(const RecordedView& view) {
  std::vector<Recorded*> found;
  for (const auto& control : view.mOrder) {
    if (auto* const wanted = dynamic_cast<Recorded*>(control.get())) found.push_back(wanted);
    const RecordedView* inner = dynamic_cast<const RecordedView*>(control.get());
    if (const auto* const scroll = dynamic_cast<const RecordedScrollView*>(control.get()))
      inner = &scroll->mContent;
    if (inner == nullptr) continue;
    for (Recorded* const wanted : AllOf<Recorded>(*inner)) found.push_back(wanted);
  }
  return found;
}

}  // namespace testsupport
