#include "authoring/diff/ListDiff.h"

#include <algorithm>

namespace authoring {

namespace {

std::vector<FieldChange> CompareFields(const ListFields& oldFields, const ListFields& newFields) {
  std::map<std::string_view, FieldChange> changes;
  for (const auto& [key, value] : oldFields) changes[key] = {key, value, std::nullopt};
  for (const auto& [key, value] : newFields) {
    FieldChange& change = changes[key];
    change.mKey = key;
    change.mNew = value;
  }
  std::vector<FieldChange> differing;
  for (const auto& [key, change] : changes) {
    if (change.mOld != change.mNew) differing.push_back(change);
  }
  return differing;
}

}  // namespace

ListDiff::ListDiff(const ComparedList& oldList, const ComparedList& newList)
    : mOldList(oldList), mNewList(newList) {
  RulePairs pairs = PairRules(oldList.Rules(), newList.Rules());
  mAdded = std::move(pairs.mAdded);
  mGone = std::move(pairs.mGone);
  ComparePairs(pairs);
  CompareTexts();
  Warn();
}

void ListDiff::ComparePairs(const RulePairs& pairs) {
  for (const RulePair& pair : pairs.mPairs) {
    const ComparedRule& oldRule = mOldList.Rules()[pair.mOld];
    const ComparedRule& newRule = mNewList.Rules()[pair.mNew];
    const bool isIdentifierChanged = oldRule.mID != newRule.mID;
    if (isIdentifierChanged) mFormerIDs[newRule.mID].insert(oldRule.mID);
    const bool areFieldsEqual = oldRule.mText == newRule.mText;
    if (areFieldsEqual && !isIdentifierChanged && !pair.mIsMoved) {
      ++mUnchanged;
      continue;
    }
    RuleChange change{pair, {}, isIdentifierChanged, areFieldsEqual && oldRule.mOwnID != newRule.mOwnID};
    if (!areFieldsEqual) change.mFields = CompareFields(oldRule.mFields, newRule.mFields);
    if (!areFieldsEqual && !isIdentifierChanged) {
      change.mKept = CompareKept(oldRule, mOldList.Texts(), newRule, mNewList.Texts());
    }
    mChanges.push_back(std::move(change));
  }
  std::sort(mChanges.begin(), mChanges.end(), [](const RuleChange& left, const RuleChange& right) {
    return left.mPair.mNew < right.mPair.mNew;
  });
}

void ListDiff::CompareTexts() {
  mTextChanges = CompareFields(mOldList.Texts(), mNewList.Texts());
}

bool ListDiff::IsEmpty() const {
  return mAdded.empty() && mGone.empty() && mTextChanges.empty() &&
         std::all_of(mChanges.begin(), mChanges.end(), [](const RuleChange& change) {
           return change.mFields.empty() && !change.mIsIdentifierChanged;
         });
}

bool ListDiff::IsSeenAtLaunch() const {
  return mOldList.ContentHash() != mNewList.ContentHash() || mNewList.HasFileRules();
}

const std::set<std::string>& ListDiff::FormerIDs(const std::string& newID) const {
  static const std::set<std::string> none;
  const auto found = mFormerIDs.find(newID);
  return found == mFormerIDs.end() ? none : found->second;
}

}  // namespace authoring
