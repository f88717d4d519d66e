#include "tests/support/RecordingControls.h"

namespace testsupport {

template <typename Recorded>
Recorded& RecordedView::Add() {
  auto control = std::make_unique<Recorded>();
  Recorded& result = *control;
  mOrder.push_back(std::move(control));
  return result;
}

qelui::StaticText& RecordedView::AddText(const std::u16string& text) {
  OnHostCall("View::AddText");
  auto& control = Add<RecordedText>();
  control.mText = text;
  return control;
}

qelui::Icon& RecordedView::AddIcon(qelui::IconKind kind, const std::u16string& name) {
  OnHostCall("View::AddIcon");
  auto& control = Add<RecordedIcon>();
  control.mKind = kind;
  control.mAccessibleName = name;
  return control;
}

qelui::Button& RecordedView::AddButton(const std::u16string& caption) {
  OnHostCall("View::AddButton");
  auto& control = Add<RecordedButton>();
  control.mCaption = caption;
  return control;
}

qelui::Button& RecordedView::AddHotText(const std::u16string& caption) {
  OnHostCall("View::AddHotText");
  auto& control = Add<RecordedButton>();
  control.mCaption = caption;
  control.mIsHotText = true;
  return control;
}

qelui::ProgressIndicator& RecordedView::AddProgressIndicator(const std::u16string& name) {
  OnHostCall("View::AddProgressIndicator");
  auto& control = Add<RecordedProgress>();
  control.mAccessibleName = name;
  return control;
}

qelui::Tree& RecordedView::AddTree(std::size_t columnCount, const std::u16string& name) {
  OnHostCall("View::AddTree");
  auto& control = Add<RecordedTree>();
  control.mColumnCount = columnCount;
  control.mAccessibleName = name;
  return control;
}

qelui::View& RecordedView::AddView(qelui::Direction /*direction*/) {
  OnHostCall("View::AddView");
  return Add<RecordedView>();
}

qelui::ScrollView& RecordedView::AddScrollView(const std::u16string& name) {
  OnHostCall("View::AddScrollView");
  auto& control = Add<RecordedScrollView>();
  control.mAccessibleName = name;
  return control;
}

}  // namespace testsupport
