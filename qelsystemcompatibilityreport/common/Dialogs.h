// What the library's dialogs have in common: a toolkit that can draw, and one dialog of a kind at a time.
#pragma once

#include "platform/qelui.h"

namespace qelsystemcompatibilityreport {

/// What dialogs are drawn with; null when the process has no toolkit, or one that cannot draw.
[[nodiscard]] inline qelui::DrawSupplier* FindDrawSupplier() {
  qelui::NodeManager* const manager = qelui::NodeManager::Get();
  return manager != nullptr ? manager->GetDefaultDrawSupplier() : nullptr;
}

/// Keeps the open dialog known in a place for as long as it runs.
template <typename Dialog>
class OpenDialogScope {
 public:
  OpenDialogScope(Dialog*& place, Dialog& dialog) : mPlace(place) { mPlace = &dialog; }
  ~OpenDialogScope() { mPlace = nullptr; }
  OpenDialogScope(const OpenDialogScope&) = delete;
  OpenDialogScope& operator=(const OpenDialogScope&) = delete;

 private:
  Dialog*& mPlace;
};

}  // namespace qelsystemcompatibilityreport
