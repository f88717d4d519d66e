#include "qelsystemcompatibilityreport/blocklist/HitOrder.h"

#include <algorithm>
#include <cstdint>
#include <map>
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

using ComponentRanks = std::unordered_map<const OSComponent*, std::uint32_t>;

ComponentRanks RankComponents(const std::vector<Hit>& hits) {
  ComponentRanks ranks;
  std::vector<const OSComponent*> components;
  for (const Hit& hit : hits) {
    if (ranks.emplace(hit.mComponent.get(), 0).second) components.push_back(hit.mComponent.get());
  }
  std::sort(components.begin(), components.end(),
            [](const OSComponent* left, const OSComponent* right) { return *left < *right; });
  std::uint32_t rank = 0;
  for (std::size_t index = 0; index < components.size(); ++index) {
    // Equal components share their rank.
    if (index > 0 && *components[index - 1] < *components[index]) ++rank;
    ranks[components[index]] = rank;
  }
  return ranks;
}

/// For each rule, the rank of its message. Many rules have the default message of their kind. The messages
/// are in a tree, because texts can be made to collide in a hash table.
std::vector<std::uint32_t> RankMessages(const std::vector<SCRRule>& rules) {
  std::map<std::string, std::uint32_t> ranks;
  std::vector<const std::uint32_t*> places;
  places.reserve(rules.size());
  for (const SCRRule& rule : rules) places.push_back(&ranks.emplace(rule.GetInfoMessage(), 0).first->second);
  std::uint32_t next = 0;
  for (auto& [message, rank] : ranks) rank = next++;
  std::vector<std::uint32_t> ranksOfRules(rules.size());
  std::transform(places.begin(), places.end(), ranksOfRules.begin(),
                 [](const std::uint32_t* rank) { return *rank; });
  return ranksOfRules;
}

}  // namespace

void SortHits(std::vector<Hit>& hits, const std::vector<SCRRule>& rules) {
  const ComponentRanks components = RankComponents(hits);
  const std::vector<std::uint32_t> messages = RankMessages(rules);
  std::vector<Place> places;
  places.reserve(hits.size());
  for (const Hit& hit : hits) {
    places.push_back({static_cast<std::int32_t>(rules[hit.mRule].GetErrorLevel()),
                      components.at(hit.mComponent.get()), messages[hit.mRule], places.size()});
  }
  std::sort(places.begin(), places.end());
  std::vector<Hit> sorted;
  sorted.reserve(hits.size());
  for (const Place& place : places) sorted.push_back(std::move(hits[place.mHit]));
  hits = std::move(sorted);
}

}  // namespace qelsystemcompatibilityreport
