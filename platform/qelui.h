// What the library asks of the host's user-interface toolkit.
//
// A process may be without a toolkit, such as one that runs in the background: then the node manager is
// missing, and nothing is shown. Everything here is the main thread's.
#pragma once

#include <string>

#if defined(_WIN32)
#if defined(QELUI_BUILDING)
#define QELUI_EXPORT __declspec(dllexport)
#else
#define QELUI_EXPORT __declspec(dllimport)
#endif
#else
#define QELUI_EXPORT __attribute__((visibility("default")))
#endif

namespace qelui {

/// A window of the toolkit, the owner of a dialog. The library passes it on and never looks inside; null
/// means that there is no owner.
class OS_Window;

/// Draws and measures what a dialog holds.
class QELUI_EXPORT DrawSupplier {
 public:
  virtual ~DrawSupplier();
};

/// The toolkit's manager of windows and controls.
class QELUI_EXPORT NodeManager {
 public:
  virtual ~NodeManager();

  /// The process's node manager; null when it has no toolkit.
  [[nodiscard]] static NodeManager* Get();

  /// What dialogs are drawn with; null when the toolkit cannot draw, as without a display.
  [[nodiscard]] virtual DrawSupplier* GetDefaultDrawSupplier() = 0;

  /// Shows `message` under `title` as an error, modally over `parent`, and returns when the user closed it.
  /// UTF-16.
  virtual void ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                                OS_Window* parent) = 0;
};

/// Shows an error message, as `NodeManager::ShowErrorMessage` does; without a toolkit it does nothing.
QELUI_EXPORT void SimpleErrorMessageBox(const std::u16string& title, const std::u16string& message,
                                        OS_Window* parent);

}  // namespace qelui
