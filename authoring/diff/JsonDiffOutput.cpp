#include <cstdint>
#include <utility>

#include "authoring/diff/DiffOutputs.h"
#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRRule;

namespace {

std::int64_t Number(std::size_t value) {
  return static_cast<std::int64_t>(value);
}

json::Dictionary Begin(const char* kind) {
  json::Dictionary object;
  json::Set(object, "diff_version", std::int64_t{1});
  json::Set(object, "kind", std::string(kind));
  return object;
}

std::string End(json::Dictionary object) {
  return json::Serialise(std::any(std::move(object))) + "\n";
}

void Set(json::Dictionary& object, const MachineName& machine) {
  json::Set(object, "machine", machine.mName);
  if (machine.mLine != 0) json::Set(object, "line", Number(machine.mLine));
}

json::Dictionary Write(const FieldChange& change) {
  json::Dictionary object;
  json::Set(object, "key", change.mKey);
  if (change.mOld) json::Set(object, "old", json::Parse(*change.mOld));
  if (change.mNew) json::Set(object, "new", json::Parse(*change.mNew));
  return object;
}

json::Array Write(const std::vector<FieldChange>& changes) {
  json::Array array;
  for (const FieldChange& change : changes) array.emplace_back(Write(change));
  return array;
}

json::Array WriteRules(const std::vector<std::size_t>& indexes, const std::vector<ComparedRule>& rules) {
  json::Array array;
  for (const std::size_t index : indexes) {
    json::Dictionary fields;
    for (const auto& [key, value] : rules[index].mFields) json::Set(fields, key, json::Parse(value));
    json::Dictionary object;
    json::Set(object, "index", Number(index));
    json::Set(object, "id", rules[index].mID);
    json::Set(object, "rule", std::move(fields));
    array.emplace_back(std::move(object));
  }
  return array;
}

json::Dictionary Write(const RuleChange& change, const ListDiff& diff) {
  const ComparedRule& oldRule = diff.Old().Rules()[change.mPair.mOld];
  const ComparedRule& newRule = diff.New().Rules()[change.mPair.mNew];
  json::Dictionary object;
  json::Set(object, "old_index", Number(change.mPair.mOld));
  json::Set(object, "new_index", Number(change.mPair.mNew));
  json::Set(object, "type", newRule.mKind);
  json::Set(object, "name", newRule.mName);
  json::Set(object, "moved", change.mPair.mIsMoved);
  json::Set(object, "old_id", oldRule.mID);
  json::Set(object, "new_id", newRule.mID);
  json::Set(object, "changes", Write(change.mFields));
  return object;
}

json::Dictionary Write(const ListWarning& warning) {
  json::Array rules;
  for (const std::size_t index : warning.mRules) rules.emplace_back(Number(index));
  json::Dictionary object;
  json::Set(object, "code", std::string(NameOf(warning.mKind)));
  json::Set(object, "rules", std::move(rules));
  json::Set(object, "what", warning.mWhat);
  json::Set(object, "consequence", warning.mConsequence);
  return object;
}

json::Array Write(const std::vector<HitComponent>& components, const std::string& kind) {
  json::Array array;
  for (const HitComponent& component : components) {
    json::Dictionary object;
    json::Set(object, "name", component.mName);
    if (kind == "Property") {
      json::Set(object, "value", component.mValue);
    } else {
      json::Set(object, "version", component.mVersion);
    }
    array.emplace_back(std::move(object));
  }
  return array;
}

json::Array Write(const std::vector<IssueChange>& changes, const char* otherIDsKey) {
  json::Array array;
  for (const IssueChange& change : changes) {
    json::Dictionary object;
    json::Set(object, "level", SCRRule::ErrorLevelToString(change.mLevel));
    json::Set(object, "id", change.mID);
    json::Set(object, "rule", Number(change.mRule));
    json::Set(object, "type", change.mKind);
    json::Set(object, "info_message", change.mMessage);
    json::Set(object, "info_url", change.mURL);
    json::Set(object, "components", Write(change.mComponents, change.mKind));
    if (change.HasOtherComponents()) {
      json::Set(object, "old_components", Write(change.mFormerComponents, change.mKind));
    }
    if (!change.mOtherIDs.empty()) {
      json::Array ids;
      for (const std::string& id : change.mOtherIDs) ids.emplace_back(id);
      json::Set(object, otherIDsKey, std::move(ids));
    }
    array.emplace_back(std::move(object));
  }
  return array;
}

}  // namespace

std::string WriteJson(const ListDiff& diff, const ListNames& names) {
  json::Array changed;
  for (const RuleChange& change : diff.Changes()) changed.emplace_back(Write(change, diff));
  json::Array warnings;
  for (const ListWarning& warning : diff.Warnings()) warnings.emplace_back(Write(warning));
  json::Dictionary object = Begin("lists");
  json::Set(object, "old", names.mOld);
  json::Set(object, "new", names.mNew);
  json::Set(object, "old_blocklist_version", json::Parse(diff.Old().Version()));
  json::Set(object, "new_blocklist_version", json::Parse(diff.New().Version()));
  json::Set(object, "texts", Write(diff.TextChanges()));
  json::Set(object, "added", WriteRules(diff.Added(), diff.New().Rules()));
  json::Set(object, "gone", WriteRules(diff.Gone(), diff.Old().Rules()));
  json::Set(object, "changed", std::move(changed));
  json::Set(object, "unchanged", Number(diff.CountUnchanged()));
  json::Set(object, "seen_at_launch", diff.IsSeenAtLaunch());
  json::Set(object, "warnings", std::move(warnings));
  return End(std::move(object));
}

std::string WriteJson(const MachineDiff& diff, const MachineName& machine) {
  json::Dictionary object = Begin("machine");
  Set(object, machine);
  json::Set(object, "new", Write(diff.mNew, "known_as"));
  json::Set(object, "ongoing", Write(diff.mOngoing, "known_as"));
  json::Set(object, "resolved", Write(diff.mResolved, "goes_on_as"));
  json::Set(object, "matched_at_launch", diff.mIsMatchedAtLaunch);
  return End(std::move(object));
}

std::string WriteJson(const MachineCounts& counts) {
  json::Dictionary object = Begin("summary");
  json::Set(object, "machines", Number(counts.mMachines));
  json::Set(object, "changed", Number(counts.mChanged));
  json::Set(object, "unreadable", Number(counts.mUnreadable));
  json::Set(object, "new", Number(counts.mNew));
  json::Set(object, "ongoing", Number(counts.mOngoing));
  json::Set(object, "resolved", Number(counts.mResolved));
  json::Set(object, "told_again", Number(counts.mToldAgain));
  json::Set(object, "not_told_at_launch", Number(counts.mUnseen));
  return End(std::move(object));
}

std::string WriteErrorJson(const MachineName& machine, const std::string& error) {
  json::Dictionary object = Begin("error");
  Set(object, machine);
  json::Set(object, "error", error);
  return End(std::move(object));
}

}  // namespace authoring
