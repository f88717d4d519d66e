#pragma once

#include <exception>
#include <optional>

#include "host/qelui/DesktopWindow.h"
#include "host/qelui/native/ModalLevel.h"

class wxEventLoopBase;
class wxFrame;
class wxMenu;
class wxMenuItem;
class wxPanel;
class wxStaticText;
class wxTextCtrl;

namespace qelui::native {

class NativeDesktopWindow final : public host::DesktopWindow {
 public:
  NativeDesktopWindow();
  ~NativeDesktopWindow() override;

  void SetTitle(const std::u16string& title) override;
  void SetMenus(std::vector<host::Menu> menus) override;
  void AppendLogLine(const std::u16string& line) override;
  void ClearLog() override;
  void SetStatusText(const std::u16string& text) override;
  void SetInputLine(const std::u16string& label,
                    std::function<void(const std::u16string& text)> onEnter) override;
  void SetInputVisible(bool visible) override;
  void SetOnClose(std::function<bool()> mayClose) override;
  void Run() override;
  void Close() override;
  [[nodiscard]] OS_Window* GetWindow() override;

 private:
  /// A line of a menu that has a check mark.
  struct Checked {
    wxMenuItem* mItem = nullptr;
    std::function<bool()> mIsChecked;
  };

  void AddItem(wxMenu& menu, host::MenuItem item);
  void ChooseSoon(const Action& action);
  void UpdateCheckMarks();
  void OnEnter();
  void OnCloseBox();
  void RunGuarded(const std::function<void()>& body);

  wxFrame* mFrame;
  wxTextCtrl* mLog = nullptr;
  wxPanel* mInputRow = nullptr;
  wxStaticText* mInputLabel = nullptr;
  wxTextCtrl* mInput = nullptr;
  std::vector<Checked> mChecked;
  std::function<void(const std::u16string& text)> mOnEnter;
  std::function<bool()> mMayClose;
  std::optional<Action> mChosen;     ///< of a line of a menu; it has not run yet
  std::optional<ModalLevel> mLevel;  ///< while it runs
  wxEventLoopBase* mLoop = nullptr;  ///< while it runs
  std::exception_ptr mException;
};

}  // namespace qelui::native
