// Modal dialogs.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/qelui/Controls.h"
#include "platform/qelui/Export.h"

namespace qelui {

/// A window of the toolkit, the owner of a dialog. The library passes it on and never looks inside; null
/// means that there is no owner.
class OS_Window;

class DrawSupplier;

using TimerID = std::uint32_t;

/// What a toolkit makes for a dialog. Dialogs alone use it.
class QELUI_EXPORT DialogWindow {
 public:
  DialogWindow() = default;
  virtual ~DialogWindow();
  DialogWindow(const DialogWindow&) = delete;
  DialogWindow& operator=(const DialogWindow&) = delete;

  /// Lays its controls out downwards.
  [[nodiscard]] virtual View& GetContentView() = 0;
  virtual void SetTitle(const std::u16string& title) = 0;
  virtual void SetOkButton(Button& button) = 0;
  virtual void SetCloseControl(Button& control) = 0;
  /// The dialog becomes large enough to show content of that size at once, as far as the screen allows. It
  /// can be made smaller and larger by the user, down to a size in which everything can still be reached.
  virtual void SetContentSize(const Size& size) = 0;
  virtual void RunModal() = 0;
  virtual void Close() = 0;
  virtual void BringToFront() = 0;
  [[nodiscard]] virtual void* GetNativeWindow() = 0;
  [[nodiscard]] virtual OS_Window* AsWindow() = 0;
  virtual TimerID InstallTimer(double seconds, std::function<void(TimerID)> onTick) = 0;
  virtual void RemoveTimer(TimerID timer) = 0;
};

/// A modal dialog: derive from it, fill its content view, and run it.
class QELUI_EXPORT UI_Dialog {
 public:
  /// Makes the window, which is not shown yet. `parent` may be null.
  UI_Dialog(DrawSupplier& drawSupplier, OS_Window* parent);
  virtual ~UI_Dialog();
  UI_Dialog(const UI_Dialog&) = delete;
  UI_Dialog& operator=(const UI_Dialog&) = delete;

  [[nodiscard]] View& GetContentView();
  void SetTitle(const std::u16string& title);

  /// Makes `button` close the dialog when it is chosen, after its own action, and makes Enter choose it while
  /// it is visible and active.
  void SetOkButton(Button& button);

  /// Makes Escape and the window's close box choose `control`. Without one they close the dialog.
  void SetCloseControl(Button& control);

  /// Shows the dialog over its parent and returns when it is closed. What an action or a timer throws closes
  /// the dialog and is thrown again here.
  void RunModal();
  void Close();

  /// Brings the open dialog before all other windows.
  void BringToFront();

  /// The system's handle of the window, such as an HWND; null where there is none.
  [[nodiscard]] void* GetNativeWindow();

  /// The dialog as the owner of what is shown over it; never null.
  [[nodiscard]] OS_Window* AsWindow();

  /// Calls `OnTimer` again and again while the dialog runs, every so many seconds.
  TimerID InstallTimer(double seconds);
  void RemoveTimer(TimerID timer);

 protected:
  /// A timer's tick. This one does nothing.
  virtual void OnTimer(TimerID timer);

 private:
  friend class OS_DialogUtils;
  friend class OS_FileSaveAsDialog;

  std::unique_ptr<DialogWindow> mWindow;
};

class QELUI_EXPORT OS_DialogUtils {
 public:
  /// Makes the dialog large enough for content of that size, as far as the screen allows.
  static void SetContentSize(UI_Dialog& dialog, const Size& size);
};

/// The system's own dialog for the name of a file to write. It asks before a file is replaced.
class QELUI_EXPORT OS_FileSaveAsDialog {
 public:
  struct FileType {
    std::u16string mDescription;  ///< for people, such as "Text File"
    std::u16string mExtension;    ///< without the dot, such as "txt"

    friend bool operator==(const FileType&, const FileType&) = default;
  };

  OS_FileSaveAsDialog(std::u16string title, FileType fileType, std::u16string defaultName,
                      std::u16string startDirectory);
  ~OS_FileSaveAsDialog();
  OS_FileSaveAsDialog(const OS_FileSaveAsDialog&);
  OS_FileSaveAsDialog& operator=(const OS_FileSaveAsDialog&);

  /// The whole path of the file that the user chose; empty when the user cancelled, or without a toolkit.
  /// `parent` is the dialog over which it is shown, and may be null.
  [[nodiscard]] std::u16string RunModal(UI_Dialog* parent);

  [[nodiscard]] const std::u16string& GetTitle() const { return mTitle; }
  [[nodiscard]] const FileType& GetFileType() const { return mFileType; }
  [[nodiscard]] const std::u16string& GetDefaultName() const { return mDefaultName; }
  [[nodiscard]] const std::u16string& GetStartDirectory() const { return mStartDirectory; }

 private:
  std::u16string mTitle;
  FileType mFileType;
  std::u16string mDefaultName;
  std::u16string mStartDirectory;
};

}  // namespace qelui
