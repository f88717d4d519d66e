// The rows of a tree, as wxWidgets asks for them: a column of check boxes, then those of the texts.
#pragma once

#include <wx/dataview.h>

#include <functional>
#include <memory>
#include <vector>

#include "platform/qelui/Controls.h"

namespace qelui::native {

class TreeModel final : public wxDataViewModel {
 public:
  using OnCheck = std::function<void(std::size_t row, bool isChecked)>;

  static constexpr unsigned kCheckColumn = 0;
  static constexpr unsigned kFirstTextColumn = 1;

  /// `onCheck` hears of each check box of the first level that the user changed.
  explicit TreeModel(OnCheck onCheck) : mOnCheck(std::move(onCheck)) {}

  /// Replaces all rows. Whoever shows them has to be told afterwards.
  void SetRows(std::vector<TreeRow> rows);

  [[nodiscard]] bool HasCheckBoxes() const;
  /// All rows with rows below them, the outer ones first.
  [[nodiscard]] std::vector<wxDataViewItem> Parents() const;

  /// Calls `visit` for each row, with its depth below the first level.
  void ForEachRow(const std::function<void(const TreeRow& row, int depth)>& visit) const;

  /// Changes the row's check box, if it has one, as the user does.
  void Toggle(const wxDataViewItem& item);

  bool IsContainer(const wxDataViewItem& item) const override;
  bool HasContainerColumns(const wxDataViewItem& item) const override;
  bool HasValue(const wxDataViewItem& item, unsigned column) const override;
  wxDataViewItem GetParent(const wxDataViewItem& item) const override;
  unsigned GetChildren(const wxDataViewItem& item, wxDataViewItemArray& children) const override;
  void GetValue(wxVariant& value, const wxDataViewItem& item, unsigned column) const override;
  bool SetValue(const wxVariant& value, const wxDataViewItem& item, unsigned column) override;
  bool GetAttr(const wxDataViewItem& item, unsigned column, wxDataViewItemAttr& attribute) const override;
  unsigned GetColumnCount() const override;
  wxString GetColumnType(unsigned column) const override;

 private:
  struct Node {
    TreeRow mRow;
    std::size_t mPlace = 0;  ///< among its brothers
    Node* mParent = nullptr;
    std::vector<std::unique_ptr<Node>> mChildren;
  };
  using Nodes = std::vector<std::unique_ptr<Node>>;

  ~TreeModel() override = default;

  [[nodiscard]] static Nodes MakeNodes(std::vector<TreeRow> rows, Node* parent);
  [[nodiscard]] static Node* NodeOf(const wxDataViewItem& item);
  [[nodiscard]] static wxDataViewItem ItemOf(const Node& node);
  static void AppendParents(const Nodes& nodes, std::vector<wxDataViewItem>& parents);
  static void Visit(const Nodes& nodes, int depth,
                    const std::function<void(const TreeRow& row, int depth)>& visit);

  Nodes mNodes;
  OnCheck mOnCheck;
};

}  // namespace qelui::native
