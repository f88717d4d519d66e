#include "authoring/explain/Targets.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "authoring/explain/NameNearness.h"
#include "authoring/model/Words.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"

namespace authoring {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr std::size_t kMostNamesInAMessage = 5;

std::optional<std::size_t> ToNumber(const std::string& text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string DescribeRules(std::size_t count) {
  if (count == 0) return "the list has no rules";
  if (count == 1) return "the list has one rule, 0";
  return "the list has the rules 0 to " + std::to_string(count - 1);
}

/// The first few of them, quoted.
template <typename Names>
std::string List(const Names& names) {
  std::string list;
  std::size_t count = 0;
  for (const std::string& name : names) {
    if (++count > kMostNamesInAMessage) continue;
    list += (list.empty() ? "" : ", ") + Quoted(name);
  }
  if (count > kMostNamesInAMessage) list += " and " + std::to_string(count - kMostNamesInAMessage) + " more";
  return list;
}

/// The names nearest to a text, the nearest first.
std::vector<std::string> NearestNames(const std::set<std::string>& names, const std::string& text) {
  std::vector<std::pair<std::size_t, std::string>> near;
  const std::string small = ToSmallLetters(text);
  for (const std::string& name : names) {
    const std::size_t most = std::max(text.size(), name.size()) / 2;
    if (const auto differences = CountDifferences(small, ToSmallLetters(name), most)) {
      near.emplace_back(*differences, name);
    }
  }
  std::sort(near.begin(), near.end());
  std::vector<std::string> nearest;
  for (auto& [differences, name] : near) {
    if (nearest.size() < kMostNamesInAMessage) nearest.push_back(std::move(name));
  }
  return nearest;
}

/// The names of the files that file rules find. Other rules are not matched.
class FoundFiles : public qelsystemcompatibilityreport::MatchObserver {
 public:
  explicit FoundFiles(std::set<std::string>& names) : mNames(names) {}

  void BeginCandidate(const std::shared_ptr<OSComponent>& component) override {
    if (component->GetType() == OSComponentType::kFile) mNames.insert(component->GetName());
  }

 private:
  std::set<std::string>& mNames;
};

}  // namespace

Choice<std::size_t> ChooseRules(const std::vector<SCRRule>& rules, const std::string& text) {
  Choice<std::size_t> choice;
  if (const auto number = ToNumber(text)) {
    if (*number < rules.size()) {
      choice.mChosen.insert(*number);
    } else {
      choice.mProblem = "there is no rule " + text + "; " + DescribeRules(rules.size());
    }
    return choice;
  }
  for (std::size_t index = 0; index < rules.size(); ++index) {
    if (rules[index].GetID() == text) choice.mChosen.insert(index);
  }
  if (choice.mChosen.size() > 1) {
    choice.mNote = std::to_string(choice.mChosen.size()) + " rules share this identifier";
  }
  if (choice.mChosen.empty()) {
    choice.mProblem = "there is no rule " + Quoted(text) +
                      "; a rule is named by its number, as \"scr lint\" tells it, or by its identifier, as "
                      "\"scr check\" does; " +
                      DescribeRules(rules.size());
  }
  return choice;
}

Choice<std::string> ChooseComponents(const std::set<std::string>& names, const std::string& text) {
  Choice<std::string> choice;
  if (names.contains(text)) {
    choice.mChosen.insert(text);
    return choice;
  }
  const std::string small = ToSmallLetters(text);
  for (const std::string& name : names) {
    if (!text.empty() && ToSmallLetters(name).find(small) != std::string::npos) choice.mChosen.insert(name);
  }
  if (!choice.mChosen.empty()) {
    choice.mNote = Quoted(text) + " is a part of " + List(choice.mChosen);
    return choice;
  }
  const std::vector<std::string> nearest = NearestNames(names, text);
  choice.mProblem = "the machine has no component " + Quoted(text);
  if (!nearest.empty()) {
    choice.mProblem += "; near is " + List(nearest);
  } else if (!names.empty()) {
    choice.mProblem += "; it has " + List(names);
  }
  return choice;
}

std::set<std::string> NamesOfCandidates(const std::vector<SCRRule>& rules,
                                        const OSComponentRegistry& registry) {
  std::set<std::string> names;
  for (const auto& component : registry.GetAllComponents()) names.insert(component->GetName());
  FoundFiles files(names);
  for (const SCRRule& rule : rules) {
    if (rule.GetType() != OSComponentType::kFile) continue;
    // Its path alone: dependencies and ranges play no part here.
    const SCRRule path(OSComponentType::kFile, rule.GetName(),
                       std::vector<qelsystemcompatibilityreport::VersionRange>(), {}, {}, {}, {}, {},
                       qelsystemcompatibilityreport::SCRRuleErrorLevel::INFO);
    qelsystemcompatibilityreport::ExplainMatch(path, registry, files);
  }
  return names;
}

}  // namespace authoring
