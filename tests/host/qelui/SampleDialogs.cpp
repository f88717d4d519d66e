#include "tests/host/qelui/SampleDialogs.h"

#include <algorithm>
#include <utility>

#include "platform/qelcore/Text.h"

namespace qelui::test {

ListDialog::ListDialog(const std::vector<SampleRow>& rows, OS_Window* parent) : TimedDialog(parent) {
  const bool isSerious =
      std::any_of(rows.begin(), rows.end(), [](const SampleRow& row) { return row.mIsSerious; });
  SetTitle(u"System Compatibility Report");
  View& content = GetContentView();
  View& head = content.AddView(Direction::kAcross);
  Icon& icon = head.AddIcon(IconKind::kWarning, u"Warning");
  icon.SetVisible(isSerious);
  mTitle = &head.AddText(u"Some Application: System Compatibility Report");
  mTitle->SetFontStyle(FontStyle::kTitle);
  if (isSerious) mTitle->SetColor({245.0 / 255, 60.0 / 255, 60.0 / 255, 1});
  mScroll = &content.AddScrollView(u"Issues");
  for (const SampleRow& row : rows) AddRow(row);
  mNote = &content.AddText(
      u"If you continue with known issues, you may experience performance degradation, instability and data "
      u"loss.");
  mNote->SetVisible(isSerious);
  View& buttons = content.AddView(Direction::kAcross);
  mExport = &buttons.AddButton(u"Export Report...");
  buttons.AddSpace();
  mContinue = &buttons.AddHotText(u"Continue with known issues...");
  mContinue->SetAction([this] { Close(); });
  mContinue->SetVisible(isSerious);
  mContinue->SetActive(isSerious);
  mOk = &buttons.AddButton(u"OK");
  mOk->SetVisible(!isSerious);
  mOk->SetActive(!isSerious);
  SetOkButton(*mOk);
  SetCloseControl(isSerious ? *mContinue : *mOk);
  const Size size = mScroll->MeasureContent();
  OS_DialogUtils::SetContentSize(*this, size);
  mScroll->SetScrollBarSize(size);
  if (!mRows.empty()) mScroll->ScrollIntoView(*mRows.front());
  mScroll->Update();
}

void ListDialog::AddRow(const SampleRow& row) {
  View& line = mScroll->GetContentView().AddView(Direction::kAcross);
  line.SetHasBorder(true);
  mRows.push_back(&line);
  line.AddIcon(row.mIsSerious ? IconKind::kError : IconKind::kInformation,
               row.mIsSerious ? u"Error" : u"Information");
  View& texts = line.AddView(Direction::kDown);
  texts.SetTakesSpace(true);
  texts.AddText(row.mHeading).SetFontStyle(FontStyle::kBold);
  texts.AddText(row.mName);
  texts.AddText(row.mMessage);
  mRowButtons.push_back(&line.AddButton(row.mIsSerious ? u"Fix..." : u"Info..."));
  mRowButtons.back()->SetAccessibleName((row.mIsSerious ? u"Fix " : u"Info ") + row.mName);
}

TreeDialog::TreeDialog() {
  SetTitle(u"Application Optimizer");
  View& content = GetContentView();
  mProgress = &content.AddProgressIndicator(u"Looking at this machine");
  mTree = &content.AddTree(3, u"Optimizations");
  mTree->SetVisible(false);
  mCount = &content.AddText(u"");
  mCount->SetVisible(false);
  View& buttons = content.AddView(Direction::kAcross);
  mRestore = &buttons.AddHotText(u"Restore system defaults");
  mRestore->SetAction([this] { Close(); });
  buttons.AddSpace();
  mIgnore = &buttons.AddButton(u"Ignore");
  mIgnore->SetAction([this] { Close(); });
  mOptimize = &buttons.AddButton(u"Optimize");
  mOptimize->SetVisible(false);
  SetOkButton(*mOptimize);
  SetCloseControl(*mIgnore);
}

void TreeDialog::ShowTree(std::vector<TreeRow> rows) {
  mTree->SetRows(std::move(rows));
  mTree->ScrollToTop();
  mTree->SetVisible(true);
  mCount->SetText(u"1 of 2 selected");
  mCount->SetVisible(true);
  mProgress->SetVisible(false);
  mOptimize->SetVisible(true);
}

std::vector<SampleRow> SampleRows(std::size_t count) {
  std::vector<SampleRow> rows;
  for (std::size_t index = 0; index < count; ++index) {
    const std::u16string number = qelcore::string::UTF8to16(std::to_string(index + 1));
    std::u16string message = u"Version 1.2." + number + u" of this driver is known to lose its connection.";
    if (index % 3 == 1) {
      message +=
          u" Please install a newer one from the maker's page, start the machine anew, and look at this "
          u"report again; until then it is better to work without the second screen, and to save often.";
    }
    rows.push_back({index % 2 == 0 ? u"Unsupported Video Driver" : u"Unsupported Audio Driver",
                    (index % 2 == 0 ? u"Video: Graphics Device & Sons <b>" : u"Audio: Sound Device ") +
                        number + u" (10.18.10.4252)",
                    message, index % 3 == 0});
  }
  return rows;
}

std::vector<TreeRow> SampleTreeRows() {
  const auto group = [](std::u16string current, std::u16string optimal) {
    return std::vector<TreeRow>{TreeRow{.mCells = {u"", u"CURRENT", u"OPTIMAL"}, .mStyle = FontStyle::kBold},
                                TreeRow{.mCells = {u"", std::move(current), std::move(optimal)}}};
  };
  return {TreeRow{.mCells = {u"Power plan"},
                  .mHasCheckBox = true,
                  .mIsChecked = true,
                  .mChildren = group(u"Balanced", u"High performance")},
          TreeRow{.mCells = {u"Hardware & audio buffering"},
                  .mHasCheckBox = true,
                  .mChildren = group(u"256 samples", u"1024 samples")},
          TreeRow{.mCells = {u"Already as it should be"}, .mChildren = group(u"On", u"On")}};
}

}  // namespace qelui::test
