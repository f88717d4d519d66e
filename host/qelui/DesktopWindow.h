// The main window of a host application: a menu bar, a log of text lines, a line to type scripts into, and a
// status bar.
//
//   const auto window = qelui::host::DesktopWindow::Make();
//   window->SetTitle(u"My Application");
//   window->SetMenus({{u"Help", {{.mCaption = u"System Compatibility Report...", .mAction = ShowReport}}}});
//   window->Run();
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/qelui.h"

namespace qelui::host {

/// A line of a menu. One without a caption separates those before it from those after it.
struct MenuItem {
  std::u16string mCaption{};
  Action mAction{};
  /// Asked whenever the menu opens; an item that has it shows a check mark while the answer is true.
  std::function<bool()> mIsChecked{};
};

struct Menu {
  std::u16string mCaption{};
  std::vector<MenuItem> mItems{};
};

/// Main thread. The window is not shown before it runs. It must be gone before the toolkit is stopped.
class QELUI_EXPORT DesktopWindow {
 public:
  /// Throws `std::runtime_error` when the native toolkit was not started.
  [[nodiscard]] static std::unique_ptr<DesktopWindow> Make();

  DesktopWindow() = default;
  virtual ~DesktopWindow();
  DesktopWindow(const DesktopWindow&) = delete;
  DesktopWindow& operator=(const DesktopWindow&) = delete;

  virtual void SetTitle(const std::u16string& title) = 0;

  /// Replaces all menus. Texts are shown as they are.
  virtual void SetMenus(std::vector<Menu> menus) = 0;

  /// Adds a line to the end of the log, which users can read, select and copy but not change, and shows it.
  virtual void AppendLogLine(const std::u16string& line) = 0;
  virtual void ClearLog() = 0;

  virtual void SetStatusText(const std::u16string& text) = 0;

  /// The line to type into is hidden at first. `label` stands before it.
  virtual void SetInputLine(const std::u16string& label,
                            std::function<void(const std::u16string& text)> onEnter) = 0;
  virtual void SetInputVisible(bool visible) = 0;

  /// Asked before the user's closing of the window takes effect; false keeps the window open.
  virtual void SetOnClose(std::function<bool()> mayClose) = 0;

  /// Shows the window, runs the main thread's tasks and the user's choices, and returns when the window is
  /// closed. What an action throws closes the window and is thrown again here.
  virtual void Run() = 0;

  /// Closes the window without asking.
  virtual void Close() = 0;

  /// The window as owner of dialogs.
  [[nodiscard]] virtual OS_Window* GetWindow() = 0;
};

}  // namespace qelui::host
