#include "app/LazyToolkit.h"

#include <stdexcept>

#include "app/Output.h"
#include "host/qelui/HostSetup.h"

namespace app {

LazyToolkit::LazyToolkit() {
  qelui::host::SetNodeManager(this);
}

LazyToolkit::~LazyToolkit() {
  qelui::host::StopToolkit();
  qelui::host::SetNodeManager(nullptr);
}

void LazyToolkit::Require() {
  if (Start() == nullptr) throw UserError(mReason + R"(; "scr report" needs none)");
}

qelui::DrawSupplier* LazyToolkit::GetDefaultDrawSupplier() {
  qelui::NodeManager* const native = Start();
  return native != nullptr ? native->GetDefaultDrawSupplier() : nullptr;
}

void LazyToolkit::ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                                   qelui::OS_Window* parent) {
  if (qelui::NodeManager* const native = Start()) native->ShowErrorMessage(title, message, parent);
}

std::u16string LazyToolkit::RunSaveAsDialog(const qelui::OS_FileSaveAsDialog& dialog,
                                            qelui::DialogWindow* parent) {
  qelui::NodeManager* const native = Start();
  return native != nullptr ? native->RunSaveAsDialog(dialog, parent) : std::u16string();
}

qelui::NodeManager* LazyToolkit::Start() {
  try {
    qelui::host::StartToolkit();
    mReason.clear();
    return qelui::NodeManager::Get();
  } catch (const std::runtime_error& error) {
    mReason = error.what();
    return nullptr;
  }
}

}  // namespace app
