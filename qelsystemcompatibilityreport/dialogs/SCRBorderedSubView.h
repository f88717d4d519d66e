// A part of a dialog that is set off by a border.
#pragma once

#include "platform/qelui.h"

namespace qelsystemcompatibilityreport::dialogutils {

/// A view inside another one, with a border round its content.
class SCRBorderedSubView {
 public:
  SCRBorderedSubView(qelui::View& parent, qelui::Direction direction) : mView(parent.AddView(direction)) {
    mView.SetHasBorder(true);
  }

  [[nodiscard]] qelui::View& GetView() { return mView; }

 private:
  qelui::View& mView;
};

}  // namespace qelsystemcompatibilityreport::dialogutils
