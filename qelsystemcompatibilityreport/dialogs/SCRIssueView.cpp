#include "qelsystemcompatibilityreport/dialogs/SCRIssueView.h"

#include <utility>

namespace qelsystemcompatibilityreport {

SCRIssueView::SCRIssueView(qelui::View& parent, const ReportDialogRow& row, int buttonWidth,
                           qelui::Action action)
    : mBorder(parent, qelui::Direction::kAcross) {
  qelui::View& view = mBorder.GetView();
  view.SetAccessibleName(row.mAccessibleName);
  view.AddIcon(row.mIcon, row.mLevel);

  qelui::View& texts = view.AddView(qelui::Direction::kDown);
  texts.SetTakesSpace(true);
  // The level stands there as a word, too, so that neither colour nor shape is needed to tell it.
  texts.AddText(row.mLevel + u" \u2013 " + row.mHeading).SetFontStyle(qelui::FontStyle::kBold);
  texts.AddText(row.mComponent);
  if (!row.mMessage.empty()) texts.AddText(row.mMessage);

  qelui::Button& button = view.AddButton(row.mActionCaption);
  button.SetWidth(buttonWidth);
  button.SetAccessibleName(row.mActionAccessibleName);
  button.SetAction(std::move(action));
}

}  // namespace qelsystemcompatibilityreport
