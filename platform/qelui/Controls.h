// What a dialog is made of: texts, icons, buttons, trees, and the views that hold them.
//
// Controls belong to the view that they were added to and live as long as the dialog. A view lays its
// controls out one below or beside the other, with the spacing that is usual on the system. Lengths are in
// the toolkit's own units and mean something only between its functions. Texts are UTF-16 and shown as they
// are, without markup.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/qelui/Export.h"

namespace qelui {

/// A colour as fractions from 0 to 1.
struct Color {
  double mRed = 0;
  double mGreen = 0;
  double mBlue = 0;
  double mOpacity = 1;

  friend bool operator==(const Color&, const Color&) = default;
};

struct Size {
  int mWidth = 0;
  int mHeight = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

enum class FontStyle { kPlain, kBold, kTitle };

enum class IconKind { kInformation, kWarning, kError };

/// Which way a view lays its controls out.
enum class Direction { kDown, kAcross };

/// Runs when the user chose a control.
using Action = std::function<void()>;

/// Anything in a dialog. A new control is visible. One that is hidden takes no place and never has the focus.
class QELUI_EXPORT Control {
 public:
  Control() = default;
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  virtual void SetVisible(bool visible) = 0;

  /// What a screen reader calls the control, where its text is not enough.
  virtual void SetAccessibleName(const std::u16string& name) = 0;
};

/// A text, wrapped at the width that there is. Users can select and copy it.
class QELUI_EXPORT StaticText : public Control {
 public:
  ~StaticText() override;

  virtual void SetText(const std::u16string& text) = 0;
  /// Without a colour the text has the system's.
  virtual void SetColor(const Color& color) = 0;
  virtual void SetFontStyle(FontStyle style) = 0;
};

class QELUI_EXPORT Icon : public Control {
 public:
  ~Icon() override;
};

/// A push button, or a hot text: a button that looks like a link. One that is not active cannot be chosen.
class QELUI_EXPORT Button : public Control {
 public:
  ~Button() override;

  virtual void SetCaption(const std::u16string& caption) = 0;
  /// At least this width, as `DrawSupplier::MeasureButton` tells it.
  virtual void SetWidth(int width) = 0;
  virtual void SetActive(bool active) = 0;
  virtual void SetAction(Action action) = 0;
};

/// A circle that turns: somebody has to wait, and nobody knows how long.
class QELUI_EXPORT ProgressIndicator : public Control {
 public:
  ~ProgressIndicator() override;
};

/// A row of a tree, one text for each column, and the rows below it.
struct TreeRow {
  std::vector<std::u16string> mCells{};
  FontStyle mStyle = FontStyle::kPlain;
  bool mHasCheckBox = false;
  bool mIsChecked = false;
  std::vector<TreeRow> mChildren{};

  friend bool operator==(const TreeRow&, const TreeRow&) = default;
};

/// A tree with several columns, all of its rows unfolded.
class QELUI_EXPORT Tree : public Control {
 public:
  ~Tree() override;

  /// Replaces all rows.
  virtual void SetRows(std::vector<TreeRow> rows) = 0;

  /// Runs when the user changes the check box of a row of the first level: its place among those, and the new
  /// value.
  virtual void SetOnCheck(std::function<void(std::size_t row, bool isChecked)> onCheck) = 0;

  virtual void ScrollToTop() = 0;
};

class ScrollView;

/// Holds controls.
class QELUI_EXPORT View : public Control {
 public:
  ~View() override;

  virtual StaticText& AddText(const std::u16string& text) = 0;
  /// `name` is what a screen reader says.
  virtual Icon& AddIcon(IconKind kind, const std::u16string& name) = 0;
  virtual Button& AddButton(const std::u16string& caption) = 0;
  virtual Button& AddHotText(const std::u16string& caption) = 0;
  virtual ProgressIndicator& AddProgressIndicator(const std::u16string& name) = 0;
  /// A tree with that many columns, which takes the place that is left.
  virtual Tree& AddTree(std::size_t columnCount, const std::u16string& name) = 0;
  virtual View& AddView(Direction direction) = 0;
  /// A view for long content, which takes the place that is left.
  virtual ScrollView& AddScrollView(const std::u16string& name) = 0;
  /// Room that takes the place that is left and pushes what follows to the end.
  virtual void AddSpace() = 0;

  /// Makes a view inside a view that goes across take the width that is left, as a text column beside a
  /// button.
  virtual void SetTakesSpace(bool takesSpace) = 0;
  virtual void SetHasBorder(bool hasBorder) = 0;
};

/// Shows a part of a view that may be larger than itself. Only its height is bounded: the content has the
/// width that there is, and wraps.
class QELUI_EXPORT ScrollView : public Control {
 public:
  ~ScrollView() override;

  [[nodiscard]] virtual View& GetContentView() = 0;

  /// The size that the whole content would like to have.
  [[nodiscard]] virtual Size MeasureContent() = 0;

  /// Tells the scroll bar how long the content is.
  virtual void SetScrollBarSize(const Size& contentSize) = 0;

  /// Moves the content so that the control is seen, its beginning if it is larger.
  virtual void ScrollIntoView(const Control& control) = 0;

  /// Lays the content out anew, after it was changed. What is in view stays there.
  virtual void Update() = 0;
};

}  // namespace qelui
