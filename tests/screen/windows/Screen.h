// A running `scr` and what it shows on the screen, found and pressed through the system's own messages, as
// other programs do it.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace testsupport {

/// A window or a control of the program.
class ScreenWindow {
 public:
  explicit ScreenWindow(void* handle) : mHandle(handle) {}

  /// Its title or caption, UTF-8, without the marks of mnemonics.
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] bool IsVisible() const;
  [[nodiscard]] bool IsEnabled() const;

  /// All controls below it that can be seen.
  [[nodiscard]] std::vector<ScreenWindow> VisibleControls() const;
  /// Whether a visible control shows exactly this text.
  [[nodiscard]] bool Shows(const std::string& text) const;

  /// Presses the visible control with this text and does not wait for what follows; fails the test when there
  /// is none.
  void Press(const std::string& text) const;
  /// Chooses a line of its menus with the keyboard; both are counted from 0. Menus are known to their own
  /// program alone.
  void ChooseMenuLine(int menu, int line) const;
  /// The close box.
  void Close() const;

 private:
  void* mHandle;
};

/// One run of `scr`. What still runs at the end of the test is ended.
class ScreenProgram {
 public:
  ScreenProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments);
  ~ScreenProgram();
  ScreenProgram(const ScreenProgram&) = delete;
  ScreenProgram& operator=(const ScreenProgram&) = delete;

  /// The visible top window with this title, as soon as it is there. Throws when it does not come.
  [[nodiscard]] ScreenWindow WaitForWindow(const std::string& title);
  /// The titles of all visible top windows.
  [[nodiscard]] std::vector<std::string> Titles() const;
  /// Waits until the program ends by itself and returns its exit code. Throws when it does not.
  [[nodiscard]] int WaitForEnd();

 private:
  void* mProcess = nullptr;
  unsigned long mId = 0;
};

/// Waits until it holds, and returns whether it did before a long time was over.
[[nodiscard]] bool WaitUntil(const std::function<bool()>& holds);

}  // namespace testsupport
