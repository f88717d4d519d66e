#include "authoring/diff/RulePairs.h"

#include <algorithm>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>

#include "authoring/explain/NameNearness.h"

namespace authoring {

namespace {

using Indexes = std::vector<std::size_t>;

/// More comparisons of alike rules than any list that is written by hand needs. A larger group is paired in
/// its order.
constexpr std::size_t kMostComparisons = 1'000'000;
/// Likewise, of names.
constexpr std::size_t kMostNameComparisons = 10'000;

/// The rules of both lists that have a key in common.
struct Group {
  Indexes mOld;
  Indexes mNew;
};

/// How many fields of two rules are equal; both are in order of keys.
std::size_t CountEqualFields(const ListFields& left, const ListFields& right) {
  std::size_t count = 0;
  auto one = left.begin();
  auto other = right.begin();
  while (one != left.end() && other != right.end()) {
    if (const int order = one->mKey.compare(other->mKey); order != 0) {
      ++(order < 0 ? one : other);
      continue;
    }
    if (one->mValue == other->mValue) ++count;
    ++one;
    ++other;
  }
  return count;
}

/// The text of everything but the name.
std::string WithoutName(const ComparedRule& rule) {
  std::string text;
  for (const auto& [key, value] : rule.mFields) {
    if (key != "name") text += key + ' ' + value + '\n';
  }
  return text;
}

class Pairing {
 public:
  Pairing(const std::vector<ComparedRule>& oldRules, const std::vector<ComparedRule>& newRules)
      : mOldRules(oldRules),
        mNewRules(newRules),
        mIsOldPaired(oldRules.size(), false),
        mIsNewPaired(newRules.size(), false) {}

  RulePairs Run() {
    ForEachGroup([](const ComparedRule& rule) { return rule.mText; },
                 [this](const Group& group) { PairInOrder(group); });
    ForEachGroup([](const ComparedRule& rule) { return rule.mID; },
                 [this](const Group& group) { PairMostAlike(group); });
    ForEachGroup([](const ComparedRule& rule) { return rule.mKind + ' ' + rule.mName; },
                 [this](const Group& group) { PairMostAlike(group); });
    ForEachGroup(WithoutName, [this](const Group& group) {
      const bool hasMessage = !ValueOf(mOldRules[group.mOld.front()].mFields, "info_message").empty();
      if (hasMessage && group.mOld.size() == 1 && group.mNew.size() == 1) {
        PairInOrder(group);
      } else {
        PairNearNames(group);
      }
    });
    return Result();
  }

 private:
  using KeyOf = std::function<std::string(const ComparedRule&)>;

  /// Runs `pair` for the rules that are not paired yet and have a key, which is not empty, in common.
  void ForEachGroup(const KeyOf& keyOf, const std::function<void(const Group&)>& pair) {
    std::unordered_map<std::string, Group> groups;
    for (std::size_t index = 0; index < mOldRules.size(); ++index) {
      if (!mIsOldPaired[index]) groups[keyOf(mOldRules[index])].mOld.push_back(index);
    }
    for (std::size_t index = 0; index < mNewRules.size(); ++index) {
      if (mIsNewPaired[index]) continue;
      const auto found = groups.find(keyOf(mNewRules[index]));
      if (found != groups.end()) found->second.mNew.push_back(index);
    }
    for (const auto& [key, group] : groups) {
      if (!key.empty() && !group.mNew.empty()) pair(group);
    }
  }

  void Pair(std::size_t oldIndex, std::size_t newIndex) {
    mIsOldPaired[oldIndex] = true;
    mIsNewPaired[newIndex] = true;
    mPairs.push_back({oldIndex, newIndex, false});
  }

  void PairInOrder(const Group& group) {
    for (std::size_t place = 0; place < std::min(group.mOld.size(), group.mNew.size()); ++place) {
      Pair(group.mOld[place], group.mNew[place]);
    }
  }

  void PairMostAlike(const Group& group) {
    if (group.mOld.size() * group.mNew.size() > kMostComparisons) {
      PairInOrder(group);
      return;
    }
    struct Candidate {
      std::size_t mEqualFields;
      std::size_t mDistance;  ///< of the places in the group
      std::size_t mOld;
      std::size_t mNew;
    };
    std::vector<Candidate> candidates;
    candidates.reserve(group.mOld.size() * group.mNew.size());
    for (std::size_t one = 0; one < group.mOld.size(); ++one) {
      for (std::size_t other = 0; other < group.mNew.size(); ++other) {
        const std::size_t oldIndex = group.mOld[one];
        const std::size_t newIndex = group.mNew[other];
        candidates.push_back({CountEqualFields(mOldRules[oldIndex].mFields, mNewRules[newIndex].mFields),
                              one > other ? one - other : other - one, oldIndex, newIndex});
      }
    }
    std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate& left, const Candidate& right) {
      if (left.mEqualFields != right.mEqualFields) return left.mEqualFields > right.mEqualFields;
      return left.mDistance < right.mDistance;
    });
    for (const Candidate& candidate : candidates) {
      if (!mIsOldPaired[candidate.mOld] && !mIsNewPaired[candidate.mNew])
        Pair(candidate.mOld, candidate.mNew);
    }
  }

  /// Pairs rules of which each is the only one with a name that is near the other's.
  void PairNearNames(const Group& group) {
    if (group.mOld.size() * group.mNew.size() > kMostNameComparisons) return;
    std::vector<Indexes> near(group.mOld.size());
    std::vector<std::size_t> nearOldNames(group.mNew.size(), 0);
    std::vector<RuleName> newNames;
    newNames.reserve(group.mNew.size());
    for (const std::size_t index : group.mNew) newNames.emplace_back(mNewRules[index].mName);
    for (std::size_t one = 0; one < group.mOld.size(); ++one) {
      const RuleName oldName(mOldRules[group.mOld[one]].mName);
      for (std::size_t other = 0; other < newNames.size(); ++other) {
        if (!oldName.IsNearTo(newNames[other])) continue;
        near[one].push_back(other);
        ++nearOldNames[other];
      }
    }
    for (std::size_t one = 0; one < group.mOld.size(); ++one) {
      if (near[one].size() == 1 && nearOldNames[near[one].front()] == 1) {
        Pair(group.mOld[one], group.mNew[near[one].front()]);
      }
    }
  }

  /// All pairs but those of a longest sequence that rises in both lists are moved.
  void MarkMoved() {
    // The last pair of the best sequence of each length, and before each pair the one that leads to it.
    Indexes ends;
    Indexes before(mPairs.size(), mPairs.size());
    for (std::size_t place = 0; place < mPairs.size(); ++place) {
      const auto end = std::lower_bound(
          ends.begin(), ends.end(), mPairs[place].mNew,
          [this](std::size_t pair, std::size_t newIndex) { return mPairs[pair].mNew < newIndex; });
      if (end != ends.begin()) before[place] = *std::prev(end);
      if (end == ends.end()) {
        ends.push_back(place);
      } else {
        *end = place;
      }
      mPairs[place].mIsMoved = true;
    }
    for (std::size_t place = ends.empty() ? mPairs.size() : ends.back(); place < mPairs.size();
         place = before[place]) {
      mPairs[place].mIsMoved = false;
    }
  }

  RulePairs Result() {
    std::sort(mPairs.begin(), mPairs.end(),
              [](const RulePair& left, const RulePair& right) { return left.mOld < right.mOld; });
    MarkMoved();
    RulePairs result;
    for (std::size_t index = 0; index < mIsOldPaired.size(); ++index) {
      if (!mIsOldPaired[index]) result.mGone.push_back(index);
    }
    for (std::size_t index = 0; index < mIsNewPaired.size(); ++index) {
      if (!mIsNewPaired[index]) result.mAdded.push_back(index);
    }
    result.mPairs = std::move(mPairs);
    return result;
  }

  const std::vector<ComparedRule>& mOldRules;
  const std::vector<ComparedRule>& mNewRules;
  std::vector<bool> mIsOldPaired;
  std::vector<bool> mIsNewPaired;
  std::vector<RulePair> mPairs;
};

}  // namespace

RulePairs PairRules(const std::vector<ComparedRule>& oldRules, const std::vector<ComparedRule>& newRules) {
  return Pairing(oldRules, newRules).Run();
}

}  // namespace authoring
