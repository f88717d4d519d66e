// A small host application with a window: what an integrator's application does with the library.
#pragma once

#include <memory>
#include <string>

#include "app/Diagnostics.h"
#include "host/qelscripting/HostSetup.h"
#include "host/qelui/DesktopWindow.h"

namespace app {

class DesktopHost {
 public:
  /// `base` is the address that blocklists are fetched from; empty when none is known. The native toolkit is
  /// there.
  explicit DesktopHost(std::string base);
  ~DesktopHost();
  DesktopHost(const DesktopHost&) = delete;
  DesktopHost& operator=(const DesktopHost&) = delete;

  /// Shows the window, makes the run at launch, and returns when the window is closed.
  void Run();

 private:
  void AddMenus();
  void Launch();
  void ShowReport();
  void ShowOptimizer();
  void Refresh();
  void RunScript(const std::u16string& text);
  void Log(const std::string& text);
  void LogCounts(const char* what);
  void LogProblems();

  std::string mBase;
  Diagnostics mDiagnostics;
  std::unique_ptr<qelui::host::DesktopWindow> mWindow;
  std::unique_ptr<qelscripting::host::ScriptSession> mScripts;
  bool mConsoleIsVisible = false;
  /// Says whether the host is still there to what comes from other threads.
  std::shared_ptr<bool> mIsAlive = std::make_shared<bool>(true);
};

}  // namespace app
