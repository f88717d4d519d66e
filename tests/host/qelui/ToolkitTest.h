// A running toolkit and a hand on what is on its screen.
#pragma once

#include <gtest/gtest.h>
#include <wx/scrolwin.h>
#include <wx/toplevel.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/host/qelui/SampleDialogs.h"

namespace qelui::test {

class ToolkitTest : public testing::Test {
 protected:
  /// The toolkit lives longer than what a test class has as members.
  ToolkitTest();
  ~ToolkitTest() override;
};

/// Runs `dialog`, and `script` from inside its event loop as soon as its window has the focus. Closes the
/// dialog and fails when the script throws or the dialog is still open a long time later.
void RunWith(UI_Dialog& dialog, const std::function<void()>& script);

/// Handles events until `condition` is true. Fails after a long time.
[[nodiscard]] bool WaitUntil(const std::function<bool()>& condition);

/// The uppermost open window.
[[nodiscard]] wxTopLevelWindow* TopWindow();

/// Whether one of the system's own dialogs is open and has the keyboard.
[[nodiscard]] bool IsFileDialogInFront();
[[nodiscard]] bool IsMessageInFront();

/// The button whose caption is that; null when there is none.
[[nodiscard]] wxWindow* FindButton(const std::string& caption, wxWindow* within = nullptr);

/// The part of the uppermost window that scrolls by itself; null when there is none.
[[nodiscard]] wxScrolledWindow* FindList();

/// The buttons of the list's rows, in the order of adding.
[[nodiscard]] std::vector<wxWindow*> FindRowButtons();

/// Whether the whole window is in the part of `within` that can be seen.
[[nodiscard]] bool IsSeen(const wxWindow& window, const wxWindow& within);

/// The windows of all texts that are shown, in the order of adding.
[[nodiscard]] std::vector<wxWindow*> FindTexts();

/// All windows below that one that are shown, with their own children.
[[nodiscard]] std::vector<wxWindow*> ShownDescendants(const wxWindow& window);

/// Presses a key as a user does, and handles what follows.
void PressKey(int key, int modifiers = 0);

/// Clicks into the middle of the window as a user does, and handles what follows.
void Click(const wxWindow& window);

void ClickAt(const wxPoint& placeOnScreen);

/// Presses a key without waiting, for windows that tell nothing of their keys.
void PressRawKey(int key, int modifiers = 0);

/// Runs `script` from inside the event loop that runs when `condition` has become true. What is still waiting
/// at the end of the test fails it.
void RunWhen(std::function<bool()> condition, std::function<void()> script);

/// Selects the first word of the text in that window as a user does with the mouse.
void DoubleClickAtStart(const wxWindow& window);

/// Types letters, digits and the characters of file names where the focus is.
void TypeText(const std::string& text);

/// Writes a picture of the screen into the directory that `QELSCR_SCREENSHOTS` names, if it is set.
void TakePicture(const std::string& name);

}  // namespace qelui::test
