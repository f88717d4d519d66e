#include "qelsystemcompatibilityreport/optimizer/AppOptimizerDialog.h"

#include "platform/qelcore/Localisation.h"
#include "qelsystemcompatibilityreport/optimizer/OptimizerDialogContent.h"

namespace qelsystemcompatibilityreport {

using qelcore::Localise;
using qelui::Direction;
using enum AppOptimizationStatus;

namespace {

constexpr double kPollSeconds = 0.2;
constexpr std::size_t kColumnCount = 3;

std::u16string Title() {
  return Localise("$$$/qel/ao/kTitleText=Application Optimizer");
}

}  // namespace

AppOptimizerDialog::AppOptimizerDialog(qelui::DrawSupplier& drawSupplier, qelui::OS_Window* parent)
    : UI_Dialog(drawSupplier, parent) {
  AddControls();
  InitOptimizationStates(mStates);
  const AppOptimizationStatus status = BeginDetermineOptimizations(mStates);
  mIsPending = status == OptimizationPending;
  // A failure or a stop fills the tree as well, here and only here. That is intended.
  if (!mIsPending) FillTree();
  ShowDetermineFailure(status);
}

void AppOptimizerDialog::AddControls() {
  SetTitle(Title());
  qelui::View& content = GetContentView();
  content.AddText(Title()).SetFontStyle(qelui::FontStyle::kTitle);
  mProgress = &content.AddProgressIndicator(Title());
  mTree = &content.AddTree(kColumnCount, Title());
  mTree->SetVisible(false);
  mTree->SetOnCheck([this](std::size_t row, bool isChecked) { OnCheck(row, isChecked); });
  mCountText = &content.AddText({});
  mCountText->SetVisible(false);
  mFailureText = &content.AddText({});
  mFailureText->SetVisible(false);

  qelui::View& buttons = content.AddView(Direction::kAcross);
  buttons.AddHotText(Localise("$$$/qel/ao/kRestoreDefaultHotText=Restore system defaults")).SetAction([this] {
    RunToTheEndAndClose(BeginDefaultOptimizations, ContinueDefaultOptimizations, VisitedStates::kAll);
  });
  buttons.AddSpace();
  qelui::Button& ignore = buttons.AddButton(Localise("$$$/qel/ao/kCancelText=Ignore"));
  ignore.SetAction([this] { Close(); });
  SetCloseControl(ignore);
  mOptimizeButton = &buttons.AddButton(Localise("$$$/qel/ao/kOptimizeButtonText=Optimize"));
  mOptimizeButton->SetVisible(false);
  mOptimizeButton->SetAction([this] {
    RunToTheEndAndClose(BeginAcceptOptimizations, ContinueAcceptOptimizations, VisitedStates::kSelected);
  });
  SetOkButton(*mOptimizeButton);
}

void AppOptimizerDialog::Run() {
  if (mIsPending) mTimer = InstallTimer(kPollSeconds);
  RunModal();
}

void AppOptimizerDialog::OnTimer(qelui::TimerID timer) {
  if (timer != mTimer) {
    UI_Dialog::OnTimer(timer);
    return;
  }
  const AppOptimizationStatus status = ContinueDetermineOptimizations(mStates);
  ShowDetermineFailure(status);
  // A failure or a stop does not fill the tree: what is still pending goes on at the next tick. That is
  // intended.
  if (status != OptimizationDone) return;
  RemoveTimer(timer);
  mTimer.reset();
  FillTree();
}

void AppOptimizerDialog::FillTree() {
  mTree->SetRows(OptimizationRows(mStates));
  mTree->ScrollToTop();
  mTree->SetVisible(true);
  UpdateCounts();
  mCountText->SetVisible(true);
  mProgress->SetVisible(false);
}

void AppOptimizerDialog::UpdateCounts() {
  const OptimizationCounts counts = CountOptimizations(mStates);
  mCountText->SetText(CountText(counts));
  mOptimizeButton->SetVisible(CanOptimize(counts));
}

void AppOptimizerDialog::ShowDetermineFailure(AppOptimizationStatus status) {
  if (status != OptimizationFailed) return;
  mFailureText->SetText(FailureText(mStates, VisitedStates::kAll));
  mFailureText->SetVisible(true);
}

void AppOptimizerDialog::OnCheck(std::size_t row, bool isChecked) {
  mStates.at(row).mSelected = isChecked;
  UpdateCounts();
}

void AppOptimizerDialog::RunToTheEndAndClose(Pass begin, Pass goOn, VisitedStates visited) {
  AppOptimizationStatus status = begin(mStates);
  // Without a pause: the dialog stays as it is until every step has come to its end. That is intended.
  while (status == OptimizationPending) status = goOn(mStates);
  if (status == OptimizationFailed) {
    qelui::SimpleErrorMessageBox(Title(), FailureText(mStates, visited), nullptr);
  }
  Close();
}

}  // namespace qelsystemcompatibilityreport
