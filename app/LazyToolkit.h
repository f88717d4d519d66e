// Windows for verbs that may need some.
#pragma once

#include <string>

#include "platform/qelui.h"

namespace app {

/// The process's toolkit as long as it lives. The native one is loaded when something is to be shown, so that
/// a verb that shows nothing does not pay for it. One at a time.
class LazyToolkit final : public qelui::NodeManager {
 public:
  LazyToolkit();
  ~LazyToolkit() override;

  /// Loads the native toolkit now. Throws `UserError` when that is impossible, such as without a display.
  void Require();

  /// Why something that was to be shown was not; empty when nothing was amiss.
  [[nodiscard]] const std::string& WhyNothingWasShown() const { return mReason; }

  [[nodiscard]] qelui::DrawSupplier* GetDefaultDrawSupplier() override;
  void ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                        qelui::OS_Window* parent) override;
  [[nodiscard]] std::u16string RunSaveAsDialog(const qelui::OS_FileSaveAsDialog& dialog,
                                               qelui::DialogWindow* parent) override;

 private:
  /// The native toolkit; null, with the reason kept, when it cannot be had.
  [[nodiscard]] qelui::NodeManager* Start();

  std::string mReason;
};

}  // namespace app
