#pragma once

#include <wx/gdicmn.h>

#include <memory>
#include <vector>

#include "host/qelui/native/NativeControl.h"
#include "host/qelui/native/WidthCache.h"

class wxPanel;

namespace qelui::native {

/// A list goes down and may get long. What is added to it stands in groups, each with a window of its own,
/// because the system goes through all windows in a window when one of them changes, and for each frame. A
/// group is in the layout like any view, but is none of the controls that anybody asked for.
enum class ViewRole { kPlain, kList, kGroup };

class ViewControl final : public ControlOf<View> {
 public:
  /// The gap is what stands between two controls of a view that goes down, in usual borders.
  ViewControl(ControlHost& host, wxWindow& parent, Direction direction, int gapInBorders, ViewRole role);
  ~ViewControl() override;

  StaticText& AddText(const std::u16string& text) override;
  Icon& AddIcon(IconKind kind, const std::u16string& name) override;
  Button& AddButton(const std::u16string& caption) override;
  Button& AddHotText(const std::u16string& caption) override;
  ProgressIndicator& AddProgressIndicator(const std::u16string& name) override;
  Tree& AddTree(std::size_t columnCount, const std::u16string& name) override;
  View& AddView(Direction direction) override;
  ScrollView& AddScrollView(const std::u16string& name) override;
  void AddSpace() override;
  void SetTakesSpace(bool takesSpace) override;
  void SetHasBorder(bool hasBorder) override;

  /// Room between the view's edge and its content, in usual borders.
  void SetPadding(int borders);

  /// Keeps what was added last at the lower edge, as a dialog's buttons.
  void KeepLastAtEnd() { mLayout.KeepLastAtEnd(); }

  /// Calls `visit` for each control below the view, in the order of adding.
  void ForEachControl(const std::function<void(NativeControl&)>& visit);

  [[nodiscard]] bool IsGroup() const { return mRole == ViewRole::kGroup; }

  /// A group is shown as long as something in it is.
  [[nodiscard]] bool IsShown() const override;

  /// How many of the controls that were added to the view itself are shown.
  [[nodiscard]] int CountShown() const;

  [[nodiscard]] int GetMinimumWidth() override;
  [[nodiscard]] int GetPreferredWidth() override;
  [[nodiscard]] int GetPreferredHeight(int width) override;
  [[nodiscard]] int GetMinimumHeight(int width) override;
  [[nodiscard]] bool TakesWidth() const override;
  [[nodiscard]] bool TakesHeight() const override;
  [[nodiscard]] bool FillsWidth() const override { return true; }
  void Place(const Rectangle& rectangle) override;

 private:
  /// What was measured since the last change.
  struct Measured {
    std::optional<int> mMinimumWidth;
    std::optional<int> mPreferredWidth;
    std::optional<bool> mTakesHeight;
    std::optional<int> mShownCount;
    WidthCache mPreferredHeights;
    WidthCache mMinimumHeights;
  };

  template <class Added, class... Arguments>
  Added& Add(Arguments&&... arguments);
  /// Adds to the view itself, even when it is a list.
  template <class Added, class... Arguments>
  Added& Append(Arguments&&... arguments);
  /// Where a new control goes: the view itself, or a list's last group.
  [[nodiscard]] ViewControl& Destination();
  void ContentChanged() override;
  void PaintBorder();

  wxPanel* mPanel;
  Direction mDirection;
  ViewRole mRole;
  int mPadding = 0;
  bool mTakesSpace = false;
  bool mHasBorder = false;
  std::vector<std::unique_ptr<LayoutItem>> mItems;
  std::vector<NativeControl*> mControls;
  StackLayout mLayout;
  mutable Measured mMeasured;
  std::optional<wxSize> mPlacedSize;  ///< of what stands at its place since the last change
};

}  // namespace qelui::native
