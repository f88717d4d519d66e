#include <stdexcept>

#include "host/qelui/HostSetup.h"
#include "host/qelui/NativeToolkit.h"

namespace qelui::host {

namespace {

NativeToolkit* gToolkit = nullptr;

}  // namespace

DesktopWindow::~DesktopWindow() = default;

std::unique_ptr<DesktopWindow> DesktopWindow::Make() {
  if (gToolkit == nullptr) throw std::runtime_error("the native toolkit was not started");
  return gToolkit->MakeDesktopWindow();
}

void StartToolkit() {
  if (gToolkit != nullptr) return;
  std::string reason;
  gToolkit = LoadNativeToolkit()(reason);
  if (gToolkit == nullptr) throw std::runtime_error(reason);
  SetNodeManager(&gToolkit->GetNodeManager());
}

void StopToolkit() {
  if (gToolkit == nullptr) return;
  if (NodeManager::Get() == &gToolkit->GetNodeManager()) SetNodeManager(nullptr);
  delete gToolkit;
  gToolkit = nullptr;
}

}  // namespace qelui::host
