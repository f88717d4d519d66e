#include <utility>

#include "platform/qelui/Dialog.h"
#include "platform/qelui/NodeManager.h"

namespace qelui {

OS_FileSaveAsDialog::OS_FileSaveAsDialog(std::u16string title, FileType fileType, std::u16string defaultName,
                                         std::u16string startDirectory)
    : mTitle(std::move(title)),
      mFileType(std::move(fileType)),
      mDefaultName(std::move(defaultName)),
      mStartDirectory(std::move(startDirectory)) {}

OS_FileSaveAsDialog::~OS_FileSaveAsDialog() = default;
OS_FileSaveAsDialog::OS_FileSaveAsDialog(const OS_FileSaveAsDialog&) = default;
OS_FileSaveAsDialog& OS_FileSaveAsDialog::operator=(const OS_FileSaveAsDialog&) = default;

std::u16string OS_FileSaveAsDialog::RunModal(UI_Dialog* parent) {
  NodeManager* const manager = NodeManager::Get();
  if (manager == nullptr) return {};
  return manager->RunSaveAsDialog(*this, parent != nullptr ? parent->mWindow.get() : nullptr);
}

}  // namespace qelui
