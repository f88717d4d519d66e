// What the library sees of the native toolkit.
#pragma once

#include "platform/qelui/NodeManager.h"

namespace qelui::native {

class NativeDrawSupplier final : public DrawSupplier {
 public:
  [[nodiscard]] int MeasureButton(const std::u16string& caption) override;
  [[nodiscard]] std::unique_ptr<DialogWindow> MakeDialogWindow(OS_Window* parent) override;
};

class NativeNodeManager final : public NodeManager {
 public:
  [[nodiscard]] DrawSupplier* GetDefaultDrawSupplier() override { return &mDrawSupplier; }
  void ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                        OS_Window* parent) override;
  [[nodiscard]] std::u16string RunSaveAsDialog(const OS_FileSaveAsDialog& dialog,
                                               DialogWindow* parent) override;

 private:
  NativeDrawSupplier mDrawSupplier;
};

}  // namespace qelui::native
