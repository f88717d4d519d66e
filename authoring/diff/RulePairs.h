// Which rule of a new list is which of the old one.
#pragma once

#include <cstddef>
#include <vector>

#include "authoring/diff/ComparedList.h"

namespace authoring {

/// Two rules that are taken for one.
struct RulePair {
  std::size_t mOld = 0;
  std::size_t mNew = 0;
  bool mIsMoved = false;  ///< it stands elsewhere among the others

  friend bool operator==(const RulePair&, const RulePair&) = default;
};

struct RulePairs {
  std::vector<RulePair> mPairs;     ///< in the order of the old list
  std::vector<std::size_t> mGone;   ///< indexes into the old list
  std::vector<std::size_t> mAdded;  ///< indexes into the new list
};

/// Pairs the rules of two lists, each at most once: first those that are equal, then those of one identifier,
/// then those of one kind and name, the most alike first, and last those that differ in their name alone,
/// when they have a message of their own that no other has, or when the one name is near the other and no
/// third one is. As few pairs as possible count as moved.
[[nodiscard]] RulePairs PairRules(const std::vector<ComparedRule>& oldRules,
                                  const std::vector<ComparedRule>& newRules);

}  // namespace authoring
