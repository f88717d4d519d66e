#include "qelsystemcompatibilityreport/blocklist/HitOrder.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace qelsystemcompatibilityreport {

namespace {

/// Where an issue stands, in numbers: texts and components are compared once for all hits.
struct Place {
  std::int32_t mLevel;
  std::uint32_t mComponent;
  std::uint32_t mMessage;
  std::size_t mHit;

  bool operator<(const Place& other) const {
    return std::tie(other.mLevel, mComponent, mMessage) < std::tie(mLevel, other.mComponent, other.mMessage);
  }
};

/// Numbers for different keys, which tell their order in the end.
template <typename Key, typename IsLess>
class Ranks {
 public:
  /// Where the key's rank will be. Keys are added before `Assign` gives them their ranks.
  const std::uint32_t* Add(Key key) {
    const auto [entry, isNew] = mRanks.emplace(std::move(key), 0);
    if (isNew) mEntries.push_back(&*entry);
    return &entry->second;
  }

  void Assign(const IsLess& isLess = {}) {
    std::sort(mEntries.begin(), mEntries.end(),
              [&](const Entry* left, const Entry* right) { return isLess(left->first, right->first); });
    std::uint32_t rank = 0;
    for (std::size_t index = 0; index < mEntries.size(); ++index) {
      if (index > 0 && isLess(mEntries[index - 1]->first, mEntries[index]->first)) ++rank;
      mEntries[index]->second = rank;
    }
  }

 private:
  using Entry = std::pair<const Key, std::uint32_t>;

  std::unordered_map<Key, std::uint32_t> mRanks;
  std::vector<Entry*> mEntries;  ///< in the order in which they were added, which is always the same
};

struct IsComponentLess {
  bool operator()(const OSComponent* left, const OSComponent* right) const { return *left < *right; }
};

}  // namespace

void SortHits(std::vector<Hit>& hits, const std::vector<SCRRule>& rules) {
  // Many rules have the default message of their kind, and components are hit by many rules.
  Ranks<std::string, std::less<>> messages;
  std::vector<const std::uint32_t*> messageOfRule;
  messageOfRule.reserve(rules.size());
  for (const SCRRule& rule : rules) messageOfRule.push_back(messages.Add(rule.GetInfoMessage()));
  messages.Assign();

  Ranks<const OSComponent*, IsComponentLess> components;
  std::vector<const std::uint32_t*> componentOfHit;
  componentOfHit.reserve(hits.size());
  for (const Hit& hit : hits) componentOfHit.push_back(components.Add(hit.mComponent.get()));
  components.Assign();

  std::vector<Place> places;
  places.reserve(hits.size());
  for (const Hit& hit : hits) {
    places.push_back({static_cast<std::int32_t>(rules[hit.mRule].GetErrorLevel()),
                      *componentOfHit[places.size()], *messageOfRule[hit.mRule], places.size()});
  }
  std::sort(places.begin(), places.end());
  std::vector<Hit> sorted;
  sorted.reserve(hits.size());
  for (const Place& place : places) sorted.push_back(std::move(hits[place.mHit]));
  hits = std::move(sorted);
}

}  // namespace qelsystemcompatibilityreport
