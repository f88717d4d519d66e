// What differs between two blocklists, and what users will notice of it.
//
//   const ListDiff diff(oldList, newList);
//   Print(DescribeAsText(diff, {"old.json", "new.json"}));
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/diff/ComparedList.h"
#include "authoring/diff/KeptIdentifier.h"
#include "authoring/diff/RulePairs.h"

namespace authoring {

/// A key whose value was changed; a value is JSON, and absent where the key was.
struct FieldChange {
  std::string mKey;
  std::optional<std::string> mOld;
  std::optional<std::string> mNew;

  friend bool operator==(const FieldChange&, const FieldChange&) = default;
};

/// A rule of both lists, of which something differs.
struct RuleChange {
  RulePair mPair;
  std::vector<FieldChange> mFields;  ///< empty when only the place differs, or the default text that it takes
  bool mIsIdentifierChanged = false;  ///< of its issues
  bool mIsNotationChanged = false;    ///< says the same in other words, which the identifier knows
  KeptIdentifier mKept{};             ///< of a rule whose fields were changed, and not its identifier
};

/// What an author may not expect users to notice, or not to notice.
enum class DiffWarning {
  kDefaultTextChangesIdentifier,
  kNotationChangesIdentifier,
  kTextChangesIdentifier,
  kConditionChangesIdentifier,
  kChangeKeepsIdentifier,
  kDefaultTextIsWrittenOut,
  kTextsRunTogether,
  kListChangeIsNotSeen,
  kOnlyOrderChanged,
  kDownloadIsRefused,
};

/// Its name in output for programs, such as "text-changes-identifier".
[[nodiscard]] std::string_view NameOf(DiffWarning warning);

struct ListWarning {
  DiffWarning mKind;
  std::vector<std::size_t> mRules;  ///< indexes into the new list; none when it is about the whole list
  std::string mWhat;
  std::string mConsequence;  ///< what users notice
};

/// The differences between two lists. Both must outlive it.
class ListDiff {
 public:
  ListDiff(const ComparedList& oldList, const ComparedList& newList);

  [[nodiscard]] const ComparedList& Old() const { return mOldList; }
  [[nodiscard]] const ComparedList& New() const { return mNewList; }

  [[nodiscard]] const std::vector<std::size_t>& Added() const { return mAdded; }
  [[nodiscard]] const std::vector<std::size_t>& Gone() const { return mGone; }

  /// The rules of both lists that differ in something, their place and identifier included, in the order of
  /// the new list.
  [[nodiscard]] const std::vector<RuleChange>& Changes() const { return mChanges; }

  /// How many rules are as they were, at their place.
  [[nodiscard]] std::size_t CountUnchanged() const { return mUnchanged; }

  [[nodiscard]] const std::vector<FieldChange>& TextChanges() const { return mTextChanges; }

  /// Whether users could notice nothing: the lists read the same, with the same identifiers, but perhaps for
  /// the order of the rules, "blocklist_version" and what the report does not read.
  [[nodiscard]] bool IsEmpty() const;

  /// Whether the nothing-changed test at launch sees that the list is another one. It also takes a list with
  /// file rules for changed, once in each process.
  [[nodiscard]] bool IsSeenAtLaunch() const;

  [[nodiscard]] const std::vector<ListWarning>& Warnings() const { return mWarnings; }

  /// The identifiers that issues of the same rules had in the old list, where they differ.
  [[nodiscard]] const std::set<std::string>& FormerIDs(const std::string& newID) const;

 private:
  void ComparePairs(const RulePairs& pairs);
  void CompareTexts();
  void Warn();

  const ComparedList& mOldList;
  const ComparedList& mNewList;
  std::vector<std::size_t> mAdded;
  std::vector<std::size_t> mGone;
  std::vector<RuleChange> mChanges;
  std::size_t mUnchanged = 0;
  std::vector<FieldChange> mTextChanges;
  std::vector<ListWarning> mWarnings;
  std::map<std::string, std::set<std::string>> mFormerIDs;
};

}  // namespace authoring
