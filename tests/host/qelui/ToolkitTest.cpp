#include "tests/host/qelui/ToolkitTest.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/eventfilter.h>
#include <wx/evtloop.h>
#include <wx/nativewin.h>
#include <wx/uiaction.h>

#include <chrono>
#include <cstdlib>
#include <set>

#include "host/qelui/HostSetup.h"

namespace qelui::test {

namespace {

constexpr std::chrono::seconds kLongTime{30};

/// Counts the events of one kind that reach the application.
class EventCounter final : public wxEventFilter {
 public:
  explicit EventCounter(wxEventType type) : mType(type) { wxEvtHandler::AddFilter(this); }
  ~EventCounter() override { wxEvtHandler::RemoveFilter(this); }

  int FilterEvent(wxEvent& event) override {
    if (event.GetEventType() == mType) ++mCount;
    return Event_Skip;
  }

  [[nodiscard]] int Count() const { return mCount; }

 private:
  wxEventType mType;
  int mCount = 0;
};

std::set<const wxWindow*> ShownWindows() {
  std::set<const wxWindow*> shown;
  for (const wxWindow* const window : wxTopLevelWindows) {
    if (window->IsShown()) shown.insert(window);
  }
  return shown;
}

/// Sends input and handles events until it has arrived, or a window was opened or closed meanwhile, which may
/// take the rest of the input to another program.
void SendInput(wxEventType lastEvent, const std::function<void(wxUIActionSimulator&)>& send) {
  const EventCounter counter(lastEvent);
  const std::set<const wxWindow*> before = ShownWindows();
  wxUIActionSimulator simulator;
  send(simulator);
  EXPECT_TRUE(WaitUntil([&] { return counter.Count() > 0 || ShownWindows() != before; }));
  while (wxEventLoopBase::GetActive()->Pending()) wxEventLoopBase::GetActive()->Dispatch();
}

}  // namespace

void ToolkitTest::SetUp() {
  host::StartToolkit();
}

void ToolkitTest::TearDown() {
  host::StopToolkit();
}

bool WaitUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + kLongTime;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    wxEventLoopBase::GetActive()->DispatchTimeout(10);
  }
  return true;
}

wxTopLevelWindow* TopWindow() {
  for (auto node = wxTopLevelWindows.GetLast(); node != nullptr; node = node->GetPrevious()) {
    if (node->GetData()->IsShown()) return static_cast<wxTopLevelWindow*>(node->GetData());
  }
  return nullptr;
}

void RunWith(UI_Dialog& dialog, const std::function<void()>& script) {
  bool hasRun = false;
  wxTheApp->CallAfter([&] {
    hasRun = true;
    auto* const window = dynamic_cast<wxDialog*>(TopWindow());
    EXPECT_NE(window, nullptr);
    if (window == nullptr) return;
    EXPECT_TRUE(WaitUntil([&] { return window->IsActive(); }));
    try {
      script();
    } catch (const std::exception& exception) {
      ADD_FAILURE() << exception.what();
    }
    EXPECT_FALSE(window->IsModal()) << "the dialog is still open";
    dialog.Close();
  });
  dialog.RunModal();
  EXPECT_TRUE(hasRun);
}

wxWindow* FindButton(const std::string& caption, wxWindow* within) {
  if (within == nullptr) within = TopWindow();
  if (dynamic_cast<wxButton*>(within) != nullptr &&
      wxControl::RemoveMnemonics(within->GetLabel()) == wxString::FromUTF8(caption))
    return within;
  for (wxWindow* const child : within->GetChildren()) {
    if (wxWindow* const found = FindButton(caption, child)) return found;
  }
  return nullptr;
}

std::vector<wxWindow*> ShownDescendants(const wxWindow& window) {
  std::vector<wxWindow*> shown;
  for (wxWindow* const child : window.GetChildren()) {
    if (!child->IsShown() || child->IsTopLevel()) continue;
    shown.push_back(child);
    const std::vector<wxWindow*> below = ShownDescendants(*child);
    shown.insert(shown.end(), below.begin(), below.end());
  }
  return shown;
}

std::vector<wxWindow*> FindTexts() {
  std::vector<wxWindow*> texts;
  for (wxWindow* const window : ShownDescendants(*TopWindow())) {
    if (dynamic_cast<wxNativeWindow*>(window) != nullptr) texts.push_back(window);
  }
  return texts;
}

void PressKey(int key, int modifiers) {
  SendInput(wxEVT_KEY_UP, [&](wxUIActionSimulator& simulator) { simulator.Char(key, modifiers); });
}

void Click(const wxWindow& window) {
  SendInput(wxEVT_LEFT_UP, [&](wxUIActionSimulator& simulator) {
    const wxRect place = window.GetScreenRect();
    simulator.MouseMove(place.x + place.width / 2, place.y + place.height / 2);
    simulator.MouseClick();
  });
}

void DoubleClickAtStart(const wxWindow& window) {
  SendInput(wxEVT_LEFT_UP, [&](wxUIActionSimulator& simulator) {
    const wxRect place = window.GetScreenRect();
    simulator.MouseMove(place.x + 4, place.y + place.height / 2);
    simulator.MouseDblClick();
  });
}

void TypeText(const std::string& text) {
  wxUIActionSimulator simulator;
  EXPECT_TRUE(simulator.Text(text.c_str()));
}

void TakePicture(const std::string& name) {
  const char* const directory = std::getenv("QELSCR_SCREENSHOTS");
  if (directory == nullptr) return;
  // Everything that is to be painted, and the theme's moving parts.
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(400);
  EXPECT_TRUE(WaitUntil([&] { return std::chrono::steady_clock::now() > end; }));
  const std::string command = "import -window root '" + (std::string(directory) + "/" + name) + ".png'";
  EXPECT_EQ(std::system(command.c_str()), 0);
}

}  // namespace qelui::test
