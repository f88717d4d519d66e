#include "qelsystemcompatibilityreport/dialogs/SCRDialog.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

#include "platform/qelcore/Browser.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/report/analytics/AnalyticsEvents.h"
#include "qelsystemcompatibilityreport/report/state/ReportStatistics.h"

namespace qelsystemcompatibilityreport {

using qelcore::Localise;
using qelcore::filesupport::File;
using qelcore::string::UTF8to16;
using qelui::Direction;

namespace {

using Clock = std::chrono::steady_clock;

/// More rows than a usual screen can show, so that the dialog's first frame looks the same as with all.
constexpr std::size_t kRowsAtOnce = 40;

// What is left between two ticks belongs to the user's input and to the frames that show the rows.
constexpr double kSecondsBetweenTicks = 0.02;
constexpr std::chrono::milliseconds kTimeOfTick{8};
/// However fast they are made: a few rows at a time scroll in calmly.
constexpr std::size_t kMostRowsOfTick = 8;

}  // namespace

SCRDialog::SCRDialog(qelui::DrawSupplier& drawSupplier, qelui::OS_Window* parent,
                     const std::u16string& applicationName, std::vector<SCRIssue> issues,
                     WriteReport writeReport, bool blocklistIsMissing)
    : SCRDialogBase(drawSupplier, parent), mIssues(std::move(issues)), mWriteReport(std::move(writeReport)) {
  ReportDialogContent content = MakeReportDialogContent(applicationName, mIssues, blocklistIsMissing);
  mTitle = content.mTitle;
  mIsSerious = content.mIsSerious;
  SetTitle(content.mCaption);
  AddHead(content);
  AddList(content, drawSupplier);
  AddButtons(content);
  mRows = std::move(content.mRows);
  ShowFirstRows();
}

void SCRDialog::AddHead(const ReportDialogContent& content) {
  qelui::View& head = GetContentView().AddView(Direction::kAcross);
  head.AddIcon(qelui::IconKind::kWarning, content.mIconName).SetVisible(mIsSerious);
  qelui::View& texts = head.AddView(Direction::kDown);
  texts.SetTakesSpace(true);
  qelui::StaticText& title = texts.AddText(content.mTitle);
  title.SetFontStyle(qelui::FontStyle::kTitle);
  if (mIsSerious) title.SetColor(kWarningColor);
  texts.AddText(content.mNote).SetVisible(mIsSerious);
}

void SCRDialog::AddList(const ReportDialogContent& content, qelui::DrawSupplier& drawSupplier) {
  dialogutils::SCRBorderedSubView list(GetContentView(), Direction::kDown);
  list.GetView().SetTakesSpace(true);
  if (content.mRows.empty()) {
    list.GetView().AddText(content.mInstead);
    return;
  }
  for (const std::u16string& caption : content.mActionCaptions)
    mRowButtonWidth = std::max(mRowButtonWidth, drawSupplier.MeasureButton(caption));
  mScrollView = &list.GetView().AddScrollView(content.mTitle);
}

void SCRDialog::AddButtons(const ReportDialogContent& content) {
  qelui::View& buttons = GetContentView().AddView(Direction::kAcross);
  qelui::Button& exportButton = buttons.AddButton(content.mExportCaption);
  exportButton.SetAction([this] { OnExport(); });
  exportButton.SetVisible(static_cast<bool>(mWriteReport));
  buttons.AddSpace();

  // Serious issues have to be acknowledged with words of their own.
  qelui::Button& goOn = buttons.AddHotText(content.mContinueCaption);
  goOn.SetAction([this] { Close(); });
  goOn.SetVisible(mIsSerious);
  goOn.SetActive(mIsSerious);

  qelui::Button& ok = buttons.AddButton(content.mOkCaption);
  ok.SetVisible(!mIsSerious);
  ok.SetActive(!mIsSerious);
  SetOkButton(ok);
  SetCloseControl(mIsSerious ? goOn : ok);
}

void SCRDialog::ShowFirstRows() {
  if (mScrollView == nullptr) return;
  mIssueViews.reserve(mRows.size());
  while (mIssueViews.size() < std::min(mRows.size(), kRowsAtOnce)) AddRow();
  const qelui::Size size = mScrollView->MeasureContent();
  qelui::OS_DialogUtils::SetContentSize(*this, size);
  mScrollView->SetScrollBarSize(size);
  mScrollView->ScrollIntoView(mIssueViews.front().GetView());
  mScrollView->Update();
  if (mIssueViews.size() < mRows.size()) mRowTimer = InstallTimer(kSecondsBetweenTicks);
}

void SCRDialog::AddRow() {
  const std::size_t index = mIssueViews.size();
  mIssueViews.emplace_back(mScrollView->GetContentView(), mRows[index], mRowButtonWidth,
                           [this, index] { OnIssueAction(mIssues[index]); });
}

void SCRDialog::OnTimer(qelui::TimerID timer) {
  if (timer != mRowTimer) {
    SCRDialogBase::OnTimer(timer);
    return;
  }
  AddMoreRows();
  if (mIssueViews.size() < mRows.size()) return;
  RemoveTimer(timer);
  mRowTimer.reset();
}

// The scroll bar grows with the rows. One that knew the length before would lead to places where nothing is.
void SCRDialog::AddMoreRows() {
  const Clock::time_point end = Clock::now() + kTimeOfTick;
  const std::size_t most = std::min(mRows.size(), mIssueViews.size() + kMostRowsOfTick);
  while (mIssueViews.size() < most) {
    AddRow();
    // Placing a row takes as long as making it, and is a part of the tick.
    mScrollView->Update();
    if (Clock::now() >= end) return;
  }
}

void SCRDialog::OnIssueAction(const SCRIssue& issue) {
  const std::u16string url = UTF8to16(issue.GetInfoURL());
  // Without a page there is nothing to open, and nothing happened that anybody should hear of.
  if (!qelcore::IsWebAddress(url)) return;
  qelcore::OpenURLInDefaultBrowser(url);
  ReportStatistics::Instance().mClickedURLs.insert(issue.GetInfoURL());
  LogFixEvent(issue);
}

void SCRDialog::OnExport() {
  qelui::OS_FileSaveAsDialog dialog(Localise("$$$/qel/scr/kSaveAsText=Save System Compatibility Report As"),
                                    {Localise("$$$/qel/scr/kFileDescription=Text File"), u"txt"},
                                    u"SystemCompatibilityReport.txt",
                                    qelcore::filesupport::Dir::UserDocsDir().GetFullPath());
  const std::u16string path = dialog.RunModal(this);
  if (path.empty()) return;
  if (Export(File(path))) {
    ++ReportStatistics::Instance().mNumberOfTimesReportSaved;
    LogExportEvent();
    return;
  }
  const std::u16string message = Localise(
      "$$$/qel/scr/kExportFailedText=The report could not be saved as @0. Choose another place or name.");
  qelui::SimpleErrorMessageBox(mTitle, qelcore::ReplacePlaceholders(message, {path}), AsWindow());
}

bool SCRDialog::Export(const File& file) {
  return AtBoundary("qelsystemcompatibilityreport::SCRDialog::Export", false, [&] {
    file.Create(false);
    mWriteReport(file);
    return file.Exists();
  });
}

}  // namespace qelsystemcompatibilityreport
