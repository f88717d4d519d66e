#include "host/qelui/native/TreeControl.h"

#include <wx/dataview.h>
#include <wx/utils.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include "host/qelui/native/TreeModel.h"

namespace qelui::native {

namespace {

constexpr int kLeastLetters = 24;
constexpr int kLeastRows = 4;
constexpr int kMostPreferredRows = 16;

/// Of a level of rows, and of a check box, which do not grow with the text.
constexpr int kIndent = 24;

/// The height of a row with the room above and below its text.
int RowHeight(const wxWindow& window) {
  return window.GetCharHeight() * 3 / 2;
}

}  // namespace

TreeControl::TreeControl(ControlHost& host, wxWindow& parent, std::size_t columnCount,
                         const std::u16string& name)
    : ControlOf<Tree>(host, new wxDataViewCtrl(&parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                               wxDV_SINGLE | wxDV_NO_HEADER)),
      mTree(static_cast<wxDataViewCtrl*>(&GetWindow())),
      mModel(new TreeModel([this](std::size_t row, bool isChecked) { OnCheck(row, isChecked); })) {
  ShowScrollBarsAlways(*mTree);
  mTree->AssociateModel(mModel.get());
  mTree->AppendToggleColumn(wxEmptyString, TreeModel::kCheckColumn, wxDATAVIEW_CELL_ACTIVATABLE,
                            wxCOL_WIDTH_AUTOSIZE, wxALIGN_CENTER, 0);
  for (std::size_t index = 0; index < columnCount; ++index) {
    wxDataViewColumn* const column = mTree->AppendTextColumn(
        wxEmptyString, TreeModel::kFirstTextColumn + static_cast<unsigned>(index), wxDATAVIEW_CELL_INERT,
        wxCOL_WIDTH_DEFAULT, wxALIGN_NOT, wxDATAVIEW_COL_RESIZABLE);
    if (index == 0) mTree->SetExpanderColumn(column);
  }
  ClearHiddenCheckMarks(*mTree->GetColumn(TreeModel::kCheckColumn));
  SetAccessibleName(name);
  mTree->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](wxDataViewEvent& event) {
    // A screen reader's choice. The mouse has changed the check box already.
    if (!wxGetMouseState().LeftIsDown()) mModel->Toggle(event.GetItem());
  });
}

TreeControl::~TreeControl() = default;

void TreeControl::SetRows(std::vector<TreeRow> rows) {
  mModel->SetRows(std::move(rows));
  mModel->Cleared();
  for (const wxDataViewItem& parent : mModel->Parents()) mTree->Expand(parent);
  mTree->GetColumn(0)->SetHidden(!mModel->HasCheckBoxes());
  NameCheckBoxes();
  Measure();
  ContentChanged();
}

void TreeControl::NameCheckBoxes() {
  int place = 0;
  mModel->ForEachRow([&](const TreeRow& row, int /*depth*/) {
    if (row.mHasCheckBox && !row.mCells.empty()) SetCheckBoxName(*mTree, place, ToWx(row.mCells.front()));
    ++place;
  });
}

void TreeControl::SetOnCheck(std::function<void(std::size_t row, bool isChecked)> onCheck) {
  mOnCheck = std::move(onCheck);
}

void TreeControl::OnCheck(std::size_t row, bool isChecked) {
  if (!mOnCheck) return;
  Host().RunGuarded([onCheck = mOnCheck, row, isChecked] { onCheck(row, isChecked); });
}

void TreeControl::ScrollToTop() {
  native::ScrollToTop(*mTree);
}

void TreeControl::ToggleCurrentRow() {
  mModel->Toggle(mTree->GetCurrentItem());
}

int TreeControl::GetMinimumWidth() {
  return kLeastLetters * mTree->GetCharWidth();
}

wxString TreeControl::GetReadableText() const {
  wxString text;
  mModel->ForEachRow([&](const TreeRow& row, int depth) {
    if (!text.empty()) text += "\n";
    text += wxString('\t', static_cast<std::size_t>(depth));
    for (std::size_t index = 0; index < row.mCells.size(); ++index)
      text += (index > 0 ? "\t" : "") + ToWx(row.mCells[index]);
  });
  return text;
}

void TreeControl::Measure() {
  const wxFont plain = mTree->GetFont();
  const wxFont bold = plain.Bold();
  std::vector<int> widths;
  mRowCount = 0;
  mModel->ForEachRow([&](const TreeRow& row, int depth) {
    ++mRowCount;
    if (widths.size() < row.mCells.size()) widths.resize(row.mCells.size());
    for (std::size_t index = 0; index < row.mCells.size(); ++index) {
      int width = 0;
      int height = 0;
      const wxFont& font = row.mStyle == FontStyle::kPlain ? plain : bold;
      mTree->GetTextExtent(ToWx(row.mCells[index]), &width, &height, nullptr, nullptr, &font);
      // Each level stands further in, behind the place where a row is unfolded.
      if (index == 0) width += (depth + 1) * mTree->FromDIP(kIndent);
      widths[index] = std::max(widths[index], width + RowHeight(*mTree));
    }
  });
  mTextWidth = std::accumulate(widths.begin(), widths.end(), 0);
  for (std::size_t index = 0; index < widths.size(); ++index) {
    const unsigned column = TreeModel::kFirstTextColumn + static_cast<unsigned>(index);
    if (column < mTree->GetColumnCount()) mTree->GetColumn(column)->SetWidth(widths[index]);
  }
}

int TreeControl::GetPreferredWidth() {
  const int checkBoxes = mModel->HasCheckBoxes() ? 2 * mTree->FromDIP(kIndent) : 0;
  return std::max(mTextWidth + checkBoxes, GetMinimumWidth());
}

int TreeControl::GetPreferredHeight(int /*width*/) {
  return std::clamp(mRowCount, kLeastRows, kMostPreferredRows) * RowHeight(*mTree);
}

int TreeControl::GetMinimumHeight(int /*width*/) {
  return kLeastRows * RowHeight(*mTree);
}

}  // namespace qelui::native
