// What the change of a blocklist does to one machine.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "authoring/diff/ListDiff.h"
#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace authoring {

/// A component as an issue tells of it.
struct HitComponent {
  std::string mName;
  std::string mVersion;  ///< dotted; empty when it has none
  std::string mValue;    ///< of a property

  friend auto operator<=>(const HitComponent&, const HitComponent&) = default;
};

/// All issues of one identifier.
struct IssueChange {
  qelsystemcompatibilityreport::SCRRuleErrorLevel mLevel{};
  std::string mID;
  std::string mKind;
  std::string mMessage;
  std::string mURL;
  std::size_t mRule = 0;                        ///< the first rule of this identifier, in the list it is from
  std::vector<HitComponent> mComponents;        ///< in the order in which they are shown
  std::vector<HitComponent> mFormerComponents;  ///< of an issue that goes on: with the old list
  std::set<std::string> mOtherIDs;  ///< of a new or resolved one: what the same rule's issue is or was called

  [[nodiscard]] bool HasOtherComponents() const;
};

struct MachineDiff {
  std::vector<IssueChange> mNew;  ///< the gravest first, as everywhere here
  std::vector<IssueChange> mOngoing;
  std::vector<IssueChange> mResolved;

  /// Whether a launch with the new list matches at all: an issue of level WARN or higher is remembered, or
  /// the nothing-changed test sees that the list is another one.
  bool mIsMatchedAtLaunch = true;

  /// Whether a user would notice anything.
  [[nodiscard]] bool IsEmpty() const;
};

/// The two lists, ready to be matched.
struct BlocklistPair {
  const qelsystemcompatibilityreport::SCRBlocklist& mOld;
  const qelsystemcompatibilityreport::SCRBlocklist& mNew;
};

/// Matches both lists and resolves the issues of the new one against those of the old one. Throws
/// `std::runtime_error` when a match fails. Any thread that may match, see `SeparateMatching`.
[[nodiscard]] MachineDiff CompareOnMachine(const BlocklistPair& blocklists, const ListDiff& lists,
                                           const qelcore::utility::OSComponentRegistry& registry);

}  // namespace authoring
