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
  mIsDetermining = Determine(BeginDetermineOptimizations, VisitAll) == OptimizationPending;
  // A failure or a stop fills the tree as well, here and only here. That is intended.
  if (!mIsDetermining) FillTree();
}

void AppOptimizerDialog::AddControls() {
  SetTitle(Title());
  qelui::View& content = GetContentView();
  content.AddText(Title()).SetFontStyle(qelui::FontStyle::kTitle);
  mProgress =
      &content.AddProgressIndicator(Localise("$$$/qel/ao/kProgressText=Looking for what can be optimized"));
  mTree = &content.AddTree(kColumnCount, Localise("$$$/qel/ao/kListText=Optimizations"));
  mTree->SetVisible(false);
  mTree->SetOnCheck([this](std::size_t row, bool isChecked) { OnCheck(row, isChecked); });
  mCountText = &content.AddText({});
  mCountText->SetVisible(false);
  mFailureText = &content.AddText({});
  mFailureText->SetVisible(false);

  qelui::View& buttons = content.AddView(Direction::kAcross);
  buttons.AddHotText(Localise("$$$/qel/ao/kRestoreDefaultHotText=Restore system defaults")).SetAction([this] {
    RunToTheEndAndClose(BeginDefaultOptimizations, VisitAll, ContinueDefaultOptimizations);
  });
  buttons.AddSpace();
  qelui::Button& ignore = buttons.AddButton(Localise("$$$/qel/ao/kCancelText=Ignore"));
  ignore.SetAction([this] { Close(); });
  SetCloseControl(ignore);
  mOptimizeButton = &buttons.AddButton(Localise("$$$/qel/ao/kOptimizeButtonText=Optimize"));
  mOptimizeButton->SetVisible(false);
  mOptimizeButton->SetAction(
      [this] { RunToTheEndAndClose(BeginAcceptOptimizations, VisitSelected, ContinueAcceptOptimizations); });
  // There is no OK button: Enter must not apply what nobody chose.
}

void AppOptimizerDialog::Run() {
  if (mIsDetermining) mTimer = InstallTimer(kPollSeconds);
  RunModal();
}

void AppOptimizerDialog::OnTimer(qelui::TimerID timer) {
  if (timer != mTimer) {
    UI_Dialog::OnTimer(timer);
    return;
  }
  // A failure or a stop does not fill the tree: what is still pending goes on at the next tick. That is
  // intended.
  if (Determine(ContinueDetermineOptimizations, VisitPending) != OptimizationDone) return;
  mIsDetermining = false;
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

void AppOptimizerDialog::OnCheck(std::size_t row, bool isChecked) {
  mStates.at(row).mSelected = isChecked;
  UpdateCounts();
}

AppOptimizerDialog::PassResult AppOptimizerDialog::RunPass(Pass pass, IsVisited isVisited) {
  const std::vector<std::size_t> places = PlacesToVisit(mStates, isVisited);
  PassResult result{.mStatus = pass(mStates), .mFailure = {}};
  if (result.mStatus == OptimizationFailed) result.mFailure = FailureText(mStates, places);
  return result;
}

AppOptimizationStatus AppOptimizerDialog::Determine(Pass pass, IsVisited isVisited) {
  const PassResult result = RunPass(pass, isVisited);
  if (result.mStatus == OptimizationFailed) {
    if (!mDetermineFailures.empty()) mDetermineFailures += u'\n';
    mDetermineFailures += result.mFailure;
    mFailureText->SetText(mDetermineFailures);
    mFailureText->SetVisible(true);
  }
  return result.mStatus;
}

void AppOptimizerDialog::RunToTheEndAndClose(Pass begin, IsVisited isVisitedByBegin, Pass goOn) {
  PassResult result = RunPass(begin, isVisitedByBegin);
  // Without a pause: the dialog stays as it is until every step has come to its end. That is intended.
  while (result.mStatus == OptimizationPending) result = RunPass(goOn, VisitPending);
  if (result.mStatus == OptimizationFailed) {
    qelui::SimpleErrorMessageBox(Title(), result.mFailure, AsWindow());
  }
  Close();
}

}  // namespace qelsystemcompatibilityreport
