// What wxWidgets does not offer in the same way on every system: `gtk/` implements it for GTK, `windows/` for
// Windows.
#pragma once

#include <wx/image.h>
#include <wx/string.h>

#include <memory>

#include "platform/qelui/Controls.h"

class wxButton;
class wxDataViewColumn;
class wxDataViewCtrl;
class wxWindow;

namespace qelui::native {

/// As long as it lives, what the system's toolkit has to say about itself goes to the trace instead of to
/// standard error.
class SystemMessages {
 public:
  SystemMessages();
  ~SystemMessages();
  SystemMessages(const SystemMessages&) = delete;
  SystemMessages& operator=(const SystemMessages&) = delete;
};

/// What must happen before the first window: the language of the system's own texts. Numbers keep the format
/// that they have.
void PrepareSystem();

/// Makes the system's own dialogs and parts of controls go the way that the application's language is
/// written.
void SetDefaultDirection(bool isRightToLeft);

/// What a screen reader calls the window.
void SetAccessibleName(wxWindow& window, const wxString& name);

/// Tells screen readers that the window is a dialog.
void MarkAsDialog(wxWindow& window);

/// Makes a flat button look like a link.
void MakeLookLikeLink(wxButton& button);

/// Makes the window's scroll bars stand beside its content and be seen as long as there is something to
/// scroll, instead of only while the pointer moves.
void ShowScrollBarsAlways(wxWindow& window);

/// Shows the first row of the tree.
void ScrollToTop(wxDataViewCtrl& tree);

/// Makes screen readers see no check mark in the cells of that column that have no check box.
void ClearHiddenCheckMarks(wxDataViewColumn& column);

/// What a screen reader calls the check box in the first column of a row. Rows are counted from the top as
/// they are shown, those below other rows as well. New rows have no names.
void SetCheckBoxName(wxDataViewCtrl& tree, int row, const wxString& name);

/// The picture that the system's own messages of that kind have, a warning or an error, in its usual size.
[[nodiscard]] wxImage GetMessagePicture(IconKind kind);

/// The handle that dialogs tell the library; null on systems that have none.
[[nodiscard]] void* GetSystemHandle(wxWindow& window);

/// A text that wraps, and that users can select and copy. Nothing in it is interpreted.
class SelectableText {
 public:
  SelectableText() = default;
  virtual ~SelectableText() = default;
  SelectableText(const SelectableText&) = delete;
  SelectableText& operator=(const SelectableText&) = delete;

  [[nodiscard]] virtual wxWindow& GetWindow() = 0;
  virtual void SetText(const wxString& text) = 0;
  virtual void SetColor(const Color& color) = 0;
  virtual void SetFontStyle(FontStyle style) = 0;

  /// The width of the text on one line for each of its paragraphs.
  [[nodiscard]] virtual int MeasureWidth() = 0;
  [[nodiscard]] virtual int MeasureHeight(int width) = 0;

  [[nodiscard]] virtual bool HasSelection() = 0;
};

/// The window belongs to `parent`; the text must not be used after the window is gone.
[[nodiscard]] std::unique_ptr<SelectableText> MakeSelectableText(wxWindow& parent);

}  // namespace qelui::native
