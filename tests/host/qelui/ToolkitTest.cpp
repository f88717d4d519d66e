#include "tests/host/qelui/ToolkitTest.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/eventfilter.h>
#include <wx/evtloop.h>
#include <wx/nativewin.h>
#include <wx/timer.h>
#include <wx/uiaction.h>
#include <wx/utils.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <set>
#include <utility>

#include "host/qelui/HostSetup.h"

namespace qelui::test {

namespace {

constexpr std::chrono::seconds kLongTime{30};

/// Asks again and again, without an event loop of its own.
class Waiting final : public wxTimer {
 public:
  Waiting(std::function<bool()> condition, std::function<void()> script)
      : mCondition(std::move(condition)), mScript(std::move(script)) {
    Start(10);
  }

  void Notify() override {
    if (!mCondition()) return;
    Stop();
    mScript();
  }

 private:
  std::function<bool()> mCondition;
  std::function<void()> mScript;
};

std::vector<std::unique_ptr<Waiting>> gWaiting;

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

/// Some of the system's own dialogs have an event loop that wxWidgets does not know.
void HandleEvents(unsigned long milliseconds) {
  if (wxEventLoopBase* const loop = wxEventLoopBase::GetActive()) {
    loop->DispatchTimeout(milliseconds);
  } else if (gtk_main_iteration_do(FALSE) == FALSE) {
    wxMilliSleep(milliseconds);
  }
}

/// The window that has the keyboard; null when it is none of this program's.
GtkWindow* ActiveWindow() {
  GtkWindow* active = nullptr;
  GList* const windows = gtk_window_list_toplevels();
  for (GList* node = windows; node != nullptr; node = node->next) {
    if (gtk_window_is_active(GTK_WINDOW(node->data)) != FALSE) active = GTK_WINDOW(node->data);
  }
  g_list_free(windows);
  return active;
}

std::set<const wxWindow*> ShownWindows() {
  std::set<const wxWindow*> shown;
  for (const wxWindow* const window : wxTopLevelWindows) {
    if (window->IsShown()) shown.insert(window);
  }
  return shown;
}

/// Sends input and handles events until its last key was released, or a window was opened or closed
/// meanwhile, which may take the rest of the input to another program.
void SendInput(const std::function<void(wxUIActionSimulator&)>& send) {
  const EventCounter counter(wxEVT_KEY_UP);
  const std::set<const wxWindow*> before = ShownWindows();
  wxUIActionSimulator simulator;
  send(simulator);
  EXPECT_TRUE(WaitUntil([&] { return counter.Count() > 0 || ShownWindows() != before; }));
  while (wxEventLoopBase::GetActive()->Pending()) wxEventLoopBase::GetActive()->Dispatch();
  // What was put off until later.
  wxTheApp->ProcessPendingEvents();
}

/// Not every window tells of the mouse; a key without a meaning that was pressed later tells that the mouse's
/// events were handled.
void SendMouse(const wxPoint& place, const std::function<void(wxUIActionSimulator&)>& click) {
  SendInput([&](wxUIActionSimulator& simulator) {
    simulator.MouseMove(place);
    click(simulator);
    simulator.Char(WXK_F9);
  });
}

}  // namespace

ToolkitTest::ToolkitTest() {
  host::StartToolkit();
}

ToolkitTest::~ToolkitTest() {
  for (const std::unique_ptr<Waiting>& waiting : gWaiting)
    EXPECT_FALSE(waiting->IsRunning()) << "what was waited for did not happen";
  gWaiting.clear();
  host::StopToolkit();
}

bool WaitUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + kLongTime;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    HandleEvents(10);
  }
  return true;
}

bool IsFileDialogInFront() {
  GtkWindow* const window = ActiveWindow();
  return window != nullptr && GTK_IS_FILE_CHOOSER(window);
}

bool IsMessageInFront() {
  GtkWindow* const window = ActiveWindow();
  return window != nullptr && GTK_IS_MESSAGE_DIALOG(window);
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
  if (within == nullptr) return nullptr;
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

wxScrolledWindow* FindList() {
  for (wxWindow* const window : ShownDescendants(*TopWindow())) {
    auto* const list = dynamic_cast<wxScrolledWindow*>(window);
    // The outermost one holds everything.
    if (list != nullptr && list->GetParent() != TopWindow()) return list;
  }
  return nullptr;
}

std::vector<wxWindow*> FindRowButtons() {
  std::vector<wxWindow*> buttons;
  for (wxWindow* const window : ShownDescendants(*FindList())) {
    if (dynamic_cast<wxButton*>(window) != nullptr) buttons.push_back(window);
  }
  return buttons;
}

bool IsSeen(const wxWindow& window, const wxWindow& within) {
  return wxRect(within.ClientToScreen(wxPoint(0, 0)), within.GetClientSize())
      .Contains(window.GetScreenRect());
}

std::vector<wxWindow*> FindTexts() {
  std::vector<wxWindow*> texts;
  for (wxWindow* const window : ShownDescendants(*TopWindow())) {
    if (dynamic_cast<wxNativeWindow*>(window) != nullptr) texts.push_back(window);
  }
  return texts;
}

void PressKey(int key, int modifiers) {
  SendInput([&](wxUIActionSimulator& simulator) { simulator.Char(key, modifiers); });
}

void PressRawKey(int key, int modifiers) {
  EXPECT_TRUE(wxUIActionSimulator().Char(key, modifiers));
}

void RunWhen(std::function<bool()> condition, std::function<void()> script) {
  gWaiting.push_back(std::make_unique<Waiting>(std::move(condition), std::move(script)));
}

void ClickAt(const wxPoint& placeOnScreen) {
  SendMouse(placeOnScreen, [](wxUIActionSimulator& simulator) { simulator.MouseClick(); });
}

void Click(const wxWindow& window) {
  const wxRect place = window.GetScreenRect();
  ClickAt(place.GetPosition() + place.GetSize() / 2);
}

void DoubleClickAtStart(const wxWindow& window) {
  const wxRect place = window.GetScreenRect();
  SendMouse({place.x + 4, place.y + place.height / 2},
            [](wxUIActionSimulator& simulator) { simulator.MouseDblClick(); });
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
