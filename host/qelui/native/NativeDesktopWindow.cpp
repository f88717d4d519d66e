#include "host/qelui/native/NativeDesktopWindow.h"

#include <wx/evtloop.h>
#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <utility>

#include "host/qelui/native/Measures.h"
#include "host/qelui/native/System.h"
#include "host/qelui/native/Text.h"
#include "host/qelui/native/WindowHandle.h"
#include "platform/qelcore/Localisation.h"

namespace qelui::native {

namespace {

constexpr int kLetters = 90;
constexpr int kLines = 28;

wxFont FixedFont(const wxWindow& window) {
  return wxFont(wxFontInfo(window.GetFont().GetFractionalPointSize()).Family(wxFONTFAMILY_TELETYPE));
}

}  // namespace

NativeDesktopWindow::NativeDesktopWindow() : mFrame(new wxFrame(nullptr, wxID_ANY, wxEmptyString)) {
  mFrame->SetMenuBar(new wxMenuBar);
  mFrame->CreateStatusBar();
  auto* const panel = new wxPanel(mFrame);
  mLog = new wxTextCtrl(panel, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                        wxTE_MULTILINE | wxTE_READONLY);
  mLog->SetFont(FixedFont(*mLog));
  SetAccessibleName(*mLog, ToWx(qelcore::Localise("$$$/qel/host/ui/kLogText=Log")));
  mInputRow = new wxPanel(panel);
  mInputLabel = new wxStaticText(mInputRow, wxID_ANY, wxEmptyString);
  mInput = new wxTextCtrl(mInputRow, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                          wxTE_PROCESS_ENTER);
  mInput->SetFont(mLog->GetFont());
  auto* const row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(mInputLabel, wxSizerFlags().CentreVertical().Border(wxRIGHT, UsualBorder(*panel)));
  row->Add(mInput, wxSizerFlags(1).CentreVertical());
  mInputRow->SetSizer(row);
  auto* const column = new wxBoxSizer(wxVERTICAL);
  column->Add(mLog, wxSizerFlags(1).Expand());
  column->Add(mInputRow, wxSizerFlags().Expand().Border(wxALL, UsualBorder(*panel)));
  panel->SetSizer(column);
  column->Hide(mInputRow);

  mFrame->SetClientSize(kLetters * mLog->GetCharWidth(), kLines * mLog->GetCharHeight());
  mFrame->SetMinClientSize(mFrame->GetClientSize() / 3);
  mInput->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { OnEnter(); });
  mFrame->Bind(wxEVT_MENU_OPEN, [this](wxMenuEvent& event) {
    event.Skip();
    UpdateCheckMarks();
  });
  mFrame->Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    if (event.CanVeto()) {
      event.Veto();
      OnCloseBox();
    } else {
      Close();
    }
  });
}

NativeDesktopWindow::~NativeDesktopWindow() {
  delete mFrame;
}

void NativeDesktopWindow::SetTitle(const std::u16string& title) {
  mFrame->SetTitle(ToWx(title));
}

void NativeDesktopWindow::SetMenus(std::vector<host::Menu> menus) {
  mChecked.clear();
  auto* const bar = new wxMenuBar;
  for (host::Menu& menu : menus) {
    auto* const native = new wxMenu;
    for (host::MenuItem& item : menu.mItems) AddItem(*native, std::move(item));
    bar->Append(native, wxControl::EscapeMnemonics(ToWx(menu.mCaption)));
  }
  wxMenuBar* const before = mFrame->GetMenuBar();
  mFrame->SetMenuBar(bar);
  delete before;
}

void NativeDesktopWindow::AddItem(wxMenu& menu, host::MenuItem item) {
  if (item.mCaption.empty()) {
    menu.AppendSeparator();
    return;
  }
  wxString caption = wxControl::EscapeMnemonics(ToWx(item.mCaption));
  // What follows a tab would be read as a key.
  caption.Replace("\t", " ");
  wxMenuItem* const native =
      item.mIsChecked ? menu.AppendCheckItem(wxID_ANY, caption) : menu.Append(wxID_ANY, caption);
  if (item.mIsChecked) mChecked.push_back({native, std::move(item.mIsChecked)});
  menu.Bind(
      wxEVT_MENU, [this, action = std::move(item.mAction)](wxCommandEvent&) { ChooseSoon(action); },
      native->GetId());
}

// Whoever pressed the line may wait for the press to end, as a screen reader does, while the action may open
// a window.
void NativeDesktopWindow::ChooseSoon(const Action& action) {
  if (!mLevel || mChosen) return;
  mChosen = action;
  mFrame->CallAfter([this] {
    // The window may have been closed meanwhile.
    if (!mChosen) return;
    const Action chosen = *std::exchange(mChosen, std::nullopt);
    // A screen reader's press reaches a window below a dialog, too.
    if (chosen && mLevel->IsUppermost()) RunGuarded(chosen);
    // The press changed the mark, whatever the action did.
    UpdateCheckMarks();
  });
}

void NativeDesktopWindow::UpdateCheckMarks() {
  RunGuarded([this] {
    for (const Checked& checked : mChecked) checked.mItem->Check(checked.mIsChecked());
  });
}

void NativeDesktopWindow::AppendLogLine(const std::u16string& line) {
  mLog->AppendText(ToWx(line) + "\n");
}

void NativeDesktopWindow::ClearLog() {
  mLog->Clear();
}

void NativeDesktopWindow::SetStatusText(const std::u16string& text) {
  mFrame->SetStatusText(ToWx(text));
}

void NativeDesktopWindow::SetInputLine(const std::u16string& label,
                                       std::function<void(const std::u16string& text)> onEnter) {
  mInputLabel->SetLabelText(ToWx(label));
  SetAccessibleName(*mInput, ToWx(label));
  mOnEnter = std::move(onEnter);
  mInputRow->Layout();
}

void NativeDesktopWindow::SetInputVisible(bool visible) {
  mInputRow->GetContainingSizer()->Show(mInputRow, visible);
  mInputRow->GetParent()->Layout();
  if (visible) mInput->SetFocus();
}

void NativeDesktopWindow::SetOnClose(std::function<bool()> mayClose) {
  mMayClose = std::move(mayClose);
}

void NativeDesktopWindow::OnEnter() {
  const std::u16string text = FromWx(mInput->GetValue());
  if (text.empty() || !mOnEnter) return;
  mInput->Clear();
  RunGuarded([this, &text] { mOnEnter(text); });
}

void NativeDesktopWindow::OnCloseBox() {
  RunGuarded([this] {
    if (!mMayClose || mMayClose()) Close();
  });
}

void NativeDesktopWindow::RunGuarded(const std::function<void()>& body) {
  try {
    body();
  } catch (...) {
    if (!mException) mException = std::current_exception();
    Close();
  }
}

void NativeDesktopWindow::Run() {
  mException = nullptr;
  mLevel.emplace();
  wxEventLoop loop;
  mLoop = &loop;
  mFrame->CentreOnScreen();
  mFrame->Show();
  loop.Run();
  mLoop = nullptr;
  mLevel.reset();
  mChosen.reset();
  mFrame->Hide();
  if (mException) std::rethrow_exception(std::exchange(mException, nullptr));
}

void NativeDesktopWindow::Close() {
  // A dialog that is open above ends first; then this loop finds that it has to end.
  if (mLoop != nullptr) mLoop->ScheduleExit();
}

OS_Window* NativeDesktopWindow::GetWindow() {
  return ToContract(mFrame);
}

}  // namespace qelui::native
