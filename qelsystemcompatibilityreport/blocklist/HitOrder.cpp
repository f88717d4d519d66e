#include "qelsystemcompatibilityreport/blocklist/HitOrder.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
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

/// Sorts the values and gives `assign` each with its rank; equal ones share theirs.
template <typename Value, typename IsLess, typename Assign>
void Rank(std::vector<Value> values, const IsLess& isLess, const Assign& assign) {
  std::sort(values.begin(), values.end(), isLess);
  std::uint32_t rank = 0;
  for (std::size_t index = 0; index < values.size(); ++index) {
    if (index > 0 && isLess(values[index - 1], values[index])) ++rank;
    assign(values[index], rank);
  }
}

using ComponentRanks = std::unordered_map<const OSComponent*, std::uint32_t>;

ComponentRanks RankComponents(const std::vector<Hit>& hits) {
  ComponentRanks ranks;
  std::vector<const OSComponent*> components;
  for (const Hit& hit : hits) {
    if (ranks.emplace(hit.mComponent.get(), 0).second) components.push_back(hit.mComponent.get());
  }
  Rank(
      std::move(components), [](const OSComponent* left, const OSComponent* right) { return *left < *right; },
      [&](const OSComponent* component, std::uint32_t rank) { ranks[component] = rank; });
  return ranks;
}

std::vector<std::uint32_t> RankMessages(const std::vector<SCRRule>& rules) {
  std::vector<std::string> messages;
  messages.reserve(rules.size());
  for (const SCRRule& rule : rules) messages.push_back(rule.GetInfoMessage());
  std::vector<std::size_t> indices(rules.size());
  std::iota(indices.begin(), indices.end(), std::size_t{0});
  std::vector<std::uint32_t> ranks(rules.size());
  Rank(
      std::move(indices),
      [&](std::size_t left, std::size_t right) { return messages[left] < messages[right]; },
      [&](std::size_t index, std::uint32_t rank) { ranks[index] = rank; });
  return ranks;
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
