#include "host/qelui/native/TreeModel.h"

#include <algorithm>
#include <utility>

#include "host/qelui/native/Text.h"

namespace qelui::native {

TreeModel::Nodes TreeModel::MakeNodes(std::vector<TreeRow> rows, Node* parent) {
  Nodes nodes;
  for (TreeRow& row : rows) {
    auto node = std::make_unique<Node>();
    node->mPlace = nodes.size();
    node->mParent = parent;
    node->mChildren = MakeNodes(std::exchange(row.mChildren, {}), node.get());
    node->mRow = std::move(row);
    nodes.push_back(std::move(node));
  }
  return nodes;
}

TreeModel::Node* TreeModel::NodeOf(const wxDataViewItem& item) {
  return static_cast<Node*>(item.GetID());
}

wxDataViewItem TreeModel::ItemOf(const Node& node) {
  return wxDataViewItem(const_cast<Node*>(&node));
}

void TreeModel::SetRows(std::vector<TreeRow> rows) {
  mNodes = MakeNodes(std::move(rows), nullptr);
}

bool TreeModel::HasCheckBoxes() const {
  return std::any_of(mNodes.begin(), mNodes.end(),
                     [](const std::unique_ptr<Node>& node) { return node->mRow.mHasCheckBox; });
}

void TreeModel::Visit(const Nodes& nodes, int depth,
                      const std::function<void(const TreeRow& row, int depth)>& visit) {
  for (const std::unique_ptr<Node>& node : nodes) {
    visit(node->mRow, depth);
    Visit(node->mChildren, depth + 1, visit);
  }
}

void TreeModel::ForEachRow(const std::function<void(const TreeRow& row, int depth)>& visit) const {
  Visit(mNodes, 0, visit);
}

void TreeModel::AppendParents(const Nodes& nodes, std::vector<wxDataViewItem>& parents) {
  for (const std::unique_ptr<Node>& node : nodes) {
    if (node->mChildren.empty()) continue;
    parents.push_back(ItemOf(*node));
    AppendParents(node->mChildren, parents);
  }
}

std::vector<wxDataViewItem> TreeModel::Parents() const {
  std::vector<wxDataViewItem> parents;
  AppendParents(mNodes, parents);
  return parents;
}

void TreeModel::Toggle(const wxDataViewItem& item) {
  const Node* const node = NodeOf(item);
  if (node != nullptr && node->mRow.mHasCheckBox) ChangeValue(!node->mRow.mIsChecked, item, kCheckColumn);
}

bool TreeModel::IsContainer(const wxDataViewItem& item) const {
  return !item.IsOk() || !NodeOf(item)->mChildren.empty();
}

bool TreeModel::HasContainerColumns(const wxDataViewItem& /*item*/) const {
  return true;
}

bool TreeModel::HasValue(const wxDataViewItem& item, unsigned column) const {
  return column != kCheckColumn || NodeOf(item)->mRow.mHasCheckBox;
}

wxDataViewItem TreeModel::GetParent(const wxDataViewItem& item) const {
  if (!item.IsOk() || NodeOf(item)->mParent == nullptr) return wxDataViewItem();
  return ItemOf(*NodeOf(item)->mParent);
}

unsigned TreeModel::GetChildren(const wxDataViewItem& item, wxDataViewItemArray& children) const {
  for (const std::unique_ptr<Node>& node : item.IsOk() ? NodeOf(item)->mChildren : mNodes)
    children.Add(ItemOf(*node));
  return static_cast<unsigned>(children.size());
}

void TreeModel::GetValue(wxVariant& value, const wxDataViewItem& item, unsigned column) const {
  const TreeRow& row = NodeOf(item)->mRow;
  if (column == kCheckColumn) {
    value = row.mIsChecked;
  } else if (column - kFirstTextColumn < row.mCells.size()) {
    value = ToWx(row.mCells[column - kFirstTextColumn]);
  } else {
    value = wxString();
  }
}

bool TreeModel::SetValue(const wxVariant& value, const wxDataViewItem& item, unsigned column) {
  Node& node = *NodeOf(item);
  if (column != kCheckColumn || !node.mRow.mHasCheckBox) return false;
  if (node.mRow.mIsChecked == value.GetBool()) return true;
  node.mRow.mIsChecked = value.GetBool();
  // Screen readers hear of changed rows, not of changed values.
  ItemChanged(item);
  if (node.mParent == nullptr) mOnCheck(node.mPlace, node.mRow.mIsChecked);
  return true;
}

bool TreeModel::GetAttr(const wxDataViewItem& item, unsigned /*column*/,
                        wxDataViewItemAttr& attribute) const {
  if (NodeOf(item)->mRow.mStyle == FontStyle::kPlain) return false;
  attribute.SetBold(true);
  return true;
}

unsigned TreeModel::GetColumnCount() const {
  std::size_t cells = 0;
  for (const std::unique_ptr<Node>& node : mNodes) cells = std::max(cells, node->mRow.mCells.size());
  return kFirstTextColumn + static_cast<unsigned>(cells);
}

wxString TreeModel::GetColumnType(unsigned column) const {
  return column == kCheckColumn ? "bool" : "string";
}

}  // namespace qelui::native
