// The toolkit of the process.
#pragma once

#include <memory>
#include <string>

#include "platform/qelui/Dialog.h"
#include "platform/qelui/Export.h"

namespace qelui {

/// Draws and measures what a dialog holds, and makes its window.
class QELUI_EXPORT DrawSupplier {
 public:
  DrawSupplier() = default;
  virtual ~DrawSupplier();
  DrawSupplier(const DrawSupplier&) = delete;
  DrawSupplier& operator=(const DrawSupplier&) = delete;

  /// The width of a button with this caption.
  [[nodiscard]] virtual int MeasureButton(const std::u16string& caption) = 0;

  [[nodiscard]] virtual std::unique_ptr<DialogWindow> MakeDialogWindow(OS_Window* parent) = 0;
};

/// The toolkit's manager of windows and controls.
class QELUI_EXPORT NodeManager {
 public:
  NodeManager() = default;
  virtual ~NodeManager();
  NodeManager(const NodeManager&) = delete;
  NodeManager& operator=(const NodeManager&) = delete;

  /// The process's node manager; null when it has no toolkit.
  [[nodiscard]] static NodeManager* Get();

  /// What dialogs are drawn with; null when the toolkit cannot draw, as without a display.
  [[nodiscard]] virtual DrawSupplier* GetDefaultDrawSupplier() = 0;

  /// Shows `message` under `title` as an error, modally over `parent`, and returns when the user closed it.
  /// UTF-16.
  virtual void ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                                OS_Window* parent) = 0;

  /// Asks for a file over `parent`, which may be null, as `OS_FileSaveAsDialog::RunModal` does.
  [[nodiscard]] virtual std::u16string RunSaveAsDialog(const OS_FileSaveAsDialog& dialog,
                                                       DialogWindow* parent) = 0;
};

/// Shows an error message, as `NodeManager::ShowErrorMessage` does; without a toolkit it does nothing.
QELUI_EXPORT void SimpleErrorMessageBox(const std::u16string& title, const std::u16string& message,
                                        OS_Window* parent);

}  // namespace qelui
