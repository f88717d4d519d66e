#include <algorithm>
#include <utility>

#include "authoring/diff/DiffOutputs.h"

namespace authoring {

using qelsystemcompatibilityreport::SCRRule;

namespace {

/// As much of a value, and as many indexes and components, as a line shows.
constexpr std::size_t kLongestValue = 300;
constexpr std::size_t kMostShown = 10;

std::string Shown(const std::optional<std::string>& value) {
  if (!value) return "none";
  if (value->size() <= kLongestValue) return *value;
  std::size_t length = kLongestValue;
  // Not within a character of several bytes.
  while (length > 0 && (static_cast<unsigned char>((*value)[length]) & 0xC0U) == 0x80U) --length;
  return value->substr(0, length) + "...";
}

std::string Heading(const ComparedRule& rule) {
  return " [" + rule.mKind + "] " + rule.mName + "\n";
}

std::string Describe(const FieldChange& change) {
  return "      " + change.mKey + ": " + Shown(change.mOld) + "\n" +
         std::string(change.mKey.size() + 4, ' ') + "->  " + Shown(change.mNew) + "\n";
}

std::string DescribeWhole(const ComparedRule& rule) {
  std::string text;
  for (const auto& [key, value] : rule.mFields) {
    if (key != "name" && key != "type") text += "      " + key + ": " + Shown(value) + "\n";
  }
  return text;
}

std::string Describe(const RuleChange& change, const ListDiff& diff) {
  const auto& [oldIndex, newIndex, isMoved] = change.mPair;
  const ComparedRule& oldRule = diff.Old().Rules()[oldIndex];
  const ComparedRule& newRule = diff.New().Rules()[newIndex];
  std::string text =
      change.mFields.empty() ? (isMoved ? "\n  moved    " : "\n  as it was ") : "\n  changed  ";
  text += "rule " + std::to_string(newIndex);
  if (oldIndex != newIndex) text += ", was rule " + std::to_string(oldIndex);
  if (isMoved && !change.mFields.empty()) text += ", moved";
  text += Heading(newRule);
  for (const FieldChange& field : change.mFields) text += Describe(field);
  if (change.mIsIdentifierChanged) text += Describe(FieldChange{"identifier", oldRule.mID, newRule.mID});
  return text;
}

std::string Describe(const ListWarning& warning) {
  std::string text = "\nwarning: " + warning.mWhat + "\n";
  if (!warning.mRules.empty()) {
    text += "    rules";
    for (std::size_t place = 0; place < std::min(warning.mRules.size(), kMostShown); ++place) {
      text += ' ' + std::to_string(warning.mRules[place]);
    }
    if (warning.mRules.size() > kMostShown) {
      text += " and " + std::to_string(warning.mRules.size() - kMostShown) + " more";
    }
    text += "\n";
  }
  return text + "    " + warning.mConsequence + "\n";
}

std::string DescribeComponents(const std::vector<HitComponent>& components) {
  std::string text;
  for (std::size_t place = 0; place < std::min(components.size(), kMostShown); ++place) {
    const HitComponent& component = components[place];
    text += (place == 0 ? "" : ", ") + component.mName;
    if (!component.mValue.empty()) text += " : " + component.mValue;
    if (!component.mVersion.empty()) text += " v." + component.mVersion;
  }
  if (components.size() > kMostShown) {
    text += " and " + std::to_string(components.size() - kMostShown) + " more";
  }
  return text;
}

std::string Describe(const IssueChange& change, const char* state) {
  std::string level = SCRRule::ErrorLevelToString(change.mLevel);
  level.resize(5, ' ');
  std::string text = std::string("  ") + state + ' ' + level + " [" + change.mKind + "] " +
                     DescribeComponents(change.mComponents) + "\n";
  if (change.HasOtherComponents()) {
    text += "           with the old list: " + DescribeComponents(change.mFormerComponents) + "\n";
  }
  return text + "           rule " + std::to_string(change.mRule) + ", " + change.mID + "\n";
}

std::string Plural(std::size_t count, const char* noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

}  // namespace

void MachineCounts::Add(const MachineDiff& diff) {
  ++mMachines;
  if (!diff.IsEmpty()) ++mChanged;
  if (!diff.IsEmpty() && !diff.mIsMatchedAtLaunch) ++mUnseen;
  mNew += diff.mNew.size();
  mOngoing += diff.mOngoing.size();
  mResolved += diff.mResolved.size();
  mToldAgain += static_cast<std::size_t>(
      std::count_if(diff.mNew.begin(), diff.mNew.end(),
                    [](const IssueChange& change) { return !change.mOtherIDs.empty(); }));
}

MachineCounts& MachineCounts::operator+=(const MachineCounts& other) {
  mMachines += other.mMachines;
  mChanged += other.mChanged;
  mUnreadable += other.mUnreadable;
  mNew += other.mNew;
  mOngoing += other.mOngoing;
  mResolved += other.mResolved;
  mToldAgain += other.mToldAgain;
  mUnseen += other.mUnseen;
  return *this;
}

std::string DescribeAsText(const ListDiff& diff, const ListNames& names) {
  const auto changed = static_cast<std::size_t>(
      std::count_if(diff.Changes().begin(), diff.Changes().end(),
                    [](const RuleChange& change) { return !change.mFields.empty(); }));
  const auto moved =
      static_cast<std::size_t>(std::count_if(diff.Changes().begin(), diff.Changes().end(),
                                             [](const RuleChange& change) { return change.mPair.mIsMoved; }));
  std::string text = names.mOld + " -> " + names.mNew + "\n";
  text += "rules: " + std::to_string(diff.Added().size()) + " added, " + std::to_string(diff.Gone().size()) +
          " gone, " + std::to_string(changed) + " changed, " + std::to_string(moved) + " moved, " +
          std::to_string(diff.CountUnchanged()) + " as they were\n";
  if (diff.Old().Version() != diff.New().Version()) {
    text += "\n  changed  blocklist_version: " + diff.Old().Version() + " -> " + diff.New().Version() +
            ", of no consequence\n";
  }
  for (const FieldChange& change : diff.TextChanges()) {
    text += "\n  changed  text\n" + Describe(change);
  }
  for (const std::size_t index : diff.Gone()) {
    const ComparedRule& rule = diff.Old().Rules()[index];
    text += "\n  gone     rule " + std::to_string(index) + Heading(rule) + DescribeWhole(rule);
  }
  for (const std::size_t index : diff.Added()) {
    const ComparedRule& rule = diff.New().Rules()[index];
    text += "\n  added    rule " + std::to_string(index) + Heading(rule) + DescribeWhole(rule);
  }
  for (const RuleChange& change : diff.Changes()) text += Describe(change, diff);
  for (const ListWarning& warning : diff.Warnings()) text += Describe(warning);
  return text;
}

std::string DescribeAsText(const MachineDiff& diff, const std::string& machine) {
  if (diff.IsEmpty()) return {};
  std::string text = machine + ": " + std::to_string(diff.mNew.size()) + " new, " +
                     std::to_string(diff.mOngoing.size()) + " ongoing, " +
                     std::to_string(diff.mResolved.size()) + " resolved\n";
  for (const IssueChange& change : diff.mNew) {
    text += Describe(change, "new     ");
    for (const std::string& id : change.mOtherIDs) {
      text += "           known already, as " + id + "; told again because its identifier changed\n";
    }
  }
  for (const IssueChange& change : diff.mOngoing) {
    if (change.HasOtherComponents()) text += Describe(change, "ongoing ");
  }
  for (const IssueChange& change : diff.mResolved) {
    text += Describe(change, "resolved");
    for (const std::string& id : change.mOtherIDs) {
      text += "           goes on as " + id + "\n";
    }
  }
  if (!diff.mIsMatchedAtLaunch) {
    text +=
        "  not told at launch: the nothing-changed test does not see the change, and no issue of level WARN "
        "or\n  higher is known here\n";
  }
  return text;
}

std::string DescribeAsText(const MachineCounts& counts) {
  std::string text = Plural(counts.mMachines, "machine") + ", " + std::to_string(counts.mChanged) +
                     " with a change: " + std::to_string(counts.mNew) + " new, " +
                     std::to_string(counts.mOngoing) + " ongoing, " + std::to_string(counts.mResolved) +
                     " resolved";
  if (counts.mToldAgain > 0)
    text += "; " + std::to_string(counts.mToldAgain) + " new only by their identifier";
  if (counts.mUnseen > 0) text += "; " + Plural(counts.mUnseen, "machine") + " not told at launch";
  if (counts.mUnreadable > 0) text += "; " + std::to_string(counts.mUnreadable) + " unreadable";
  return text + "\n";
}

}  // namespace authoring
