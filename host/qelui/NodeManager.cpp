#include "host/qelui/HostSetup.h"
#include "platform/qelui.h"

namespace qelui {

namespace {

NodeManager* gManager = nullptr;

}  // namespace

DrawSupplier::~DrawSupplier() = default;

NodeManager::~NodeManager() = default;

NodeManager* NodeManager::Get() {
  return gManager;
}

void SimpleErrorMessageBox(const std::u16string& title, const std::u16string& message, OS_Window* parent) {
  if (gManager != nullptr) gManager->ShowErrorMessage(title, message, parent);
}

void host::SetNodeManager(NodeManager* manager) {
  gManager = manager;
}

}  // namespace qelui
