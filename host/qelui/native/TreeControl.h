#pragma once

#include <wx/object.h>

#include "host/qelui/native/NativeControl.h"

class wxDataViewCtrl;

namespace qelui::native {

class TreeModel;

class TreeControl final : public ControlOf<Tree> {
 public:
  TreeControl(ControlHost& host, wxWindow& parent, std::size_t columnCount, const std::u16string& name);
  ~TreeControl() override;

  void SetRows(std::vector<TreeRow> rows) override;
  void SetOnCheck(std::function<void(std::size_t row, bool isChecked)> onCheck) override;
  void ScrollToTop() override;

  /// Changes the check box of the row that the keyboard is on, if it has one.
  void ToggleCurrentRow();

  [[nodiscard]] bool IsTabStop() const override { return true; }
  [[nodiscard]] wxString GetReadableText() const override;
  [[nodiscard]] int GetMinimumWidth() override;
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;
  [[nodiscard]] int GetMinimumHeight(int width) override;
  [[nodiscard]] bool TakesWidth() const override { return true; }
  [[nodiscard]] bool TakesHeight() const override { return true; }

 private:
  void OnCheck(std::size_t row, bool isChecked);
  void NameCheckBoxes();
  void Measure();

  wxDataViewCtrl* mTree;
  wxObjectDataPtr<TreeModel> mModel;
  std::function<void(std::size_t row, bool isChecked)> mOnCheck;
  int mRowCount = 0;
  int mTextWidth = 0;
};

}  // namespace qelui::native
