#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "host/qelui/NativeToolkit.h"
#include "host/qelui/native/NativeDesktopWindow.h"
#include "host/qelui/native/NativeNodeManager.h"
#include "host/qelui/native/System.h"
#include "host/qelui/native/Text.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Trace.h"

namespace qelui::native {

namespace {

constexpr const char* kChannel = "Toolkit";
constexpr int kErrors = 1;
constexpr int kWarnings = 5;

void Trace(int level, const wxString& text) {
  if (qelcore::TraceEnabled(kChannel, level)) qelcore::TraceOutput(kChannel, level, text.utf8_string());
}

/// What wxWidgets has to say goes to the trace, never into a window.
class TraceLog final : public wxLog {
 public:
  void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& /*info*/) override {
    Trace(level <= wxLOG_Error ? kErrors : kWarnings, message);
  }
};

void TraceAssertion(const wxString& file, int line, const wxString& function, const wxString& condition,
                    const wxString& message) {
  Trace(kErrors, wxString::Format("%s:%d %s: %s %s", file, line, function, condition, message));
}

bool IsWrittenFromRightToLeft(const std::string& language) {
  const std::string letters = language.substr(0, language.find_first_of("_-."));
  constexpr std::array kLanguages{"ar", "ckb", "dv", "fa", "he", "iw", "ps", "sd", "ug", "ur", "yi"};
  return std::find(kLanguages.begin(), kLanguages.end(), letters) != kLanguages.end();
}

class Application final : public wxApp {
 public:
  Application() {
    SetAppDisplayName(ToWx(qelcore::GetApplicationName()));
    SetExitOnFrameDelete(false);
  }

  bool OnInit() override { return true; }

  wxLayoutDirection GetLayoutDirection() const override {
    return IsWrittenFromRightToLeft(qelcore::Locale::ApplicationLanguage()) ? wxLayout_RightToLeft
                                                                            : wxLayout_LeftToRight;
  }
};

class WxToolkit final : public host::NativeToolkit {
 public:
  ~WxToolkit() override {
    if (!mIsStarted) return;
    wxTheApp->OnExit();
    // The end would delete a log that is in place.
    wxLog::SetActiveTarget(nullptr);
    wxEntryCleanup();
  }

  /// Returns whether there can be windows.
  [[nodiscard]] bool Start() {
    PrepareSystem();
    wxSetAssertHandler(TraceAssertion);
    // Without a display the start complains at length about what its result tells.
    wxLog::EnableLogging(false);
    wxApp::SetInstance(new Application);
    std::string name = qelcore::string::UTF16to8(qelcore::GetApplicationName());
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    mIsStarted = wxEntryStart(count, arguments.data());
    wxLog::EnableLogging(true);
    if (!mIsStarted) return false;
    delete wxLog::SetActiveTarget(&mLog);
    if (!wxTheApp->CallOnInit()) return false;
    SetDefaultDirection(wxTheApp->GetLayoutDirection() == wxLayout_RightToLeft);
    // No window asks for these events, and a dialog with hundreds of rows has thousands of windows.
    wxIdleEvent::SetMode(wxIDLE_PROCESS_SPECIFIED);
    wxUpdateUIEvent::SetMode(wxUPDATE_UI_PROCESS_SPECIFIED);
    return true;
  }

  NodeManager& GetNodeManager() override { return mNodeManager; }

  std::unique_ptr<host::DesktopWindow> MakeDesktopWindow() override {
    return std::make_unique<NativeDesktopWindow>();
  }

 private:
  SystemMessages mMessages;
  TraceLog mLog;
  bool mIsStarted = false;
  NativeNodeManager mNodeManager;
};

}  // namespace

}  // namespace qelui::native

// The one thing that this library exports; `qelui` asks for it by name.
#if defined(_WIN32)
#define QELUI_NATIVE_EXPORT __declspec(dllexport)
#else
#define QELUI_NATIVE_EXPORT __attribute__((visibility("default")))
#endif

extern "C" QELUI_NATIVE_EXPORT qelui::host::NativeToolkit* qelui_native_Start(std::string& reason) {
  auto toolkit = std::make_unique<qelui::native::WxToolkit>();
  if (toolkit->Start()) return toolkit.release();
  reason = "there is no display to show windows on";
  return nullptr;
}
