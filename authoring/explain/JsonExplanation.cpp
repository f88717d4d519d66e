#include <cstdint>
#include <utility>

#include "authoring/explain/Outputs.h"
#include "authoring/explain/Sentences.h"
#include "platform/qelcore/Json.h"

namespace authoring {

namespace json = qelcore::json;
using qelcore::utility::ComponentTypeToString;

namespace {

std::int64_t Number(std::size_t value) {
  return static_cast<std::int64_t>(value);
}

json::Dictionary Step(const char* name) {
  json::Dictionary step;
  json::Set(step, "step", std::string(name));
  return step;
}

std::string NameOf(FileStep::Outcome outcome) {
  switch (outcome) {
    case FileStep::Outcome::kNoPath:
      return "no_path";
    case FileStep::Outcome::kUnknownPlaceholder:
      return "unknown_placeholder";
    case FileStep::Outcome::kNothingThere:
      return "nothing_there";
    case FileStep::Outcome::kFile:
      return "file";
    case FileStep::Outcome::kDirectory:
      break;
  }
  return "directory";
}

std::string NameOf(NameStep::Outcome outcome) {
  switch (outcome) {
    case NameStep::Outcome::kEqual:
      return "equal";
    case NameStep::Outcome::kMatches:
      return "matches";
    case NameStep::Outcome::kDiffers:
      return "differs";
    case NameStep::Outcome::kMalformed:
      return "malformed";
    case NameStep::Outcome::kRefused:
      return "refused";
    case NameStep::Outcome::kRuleHasNone:
      return "rule_has_none";
    case NameStep::Outcome::kComponentHasNone:
      break;
  }
  return "component_has_none";
}

std::string NameOf(ComparisonStep::Outcome outcome) {
  switch (outcome) {
    case ComparisonStep::Outcome::kHolds:
      return "holds";
    case ComparisonStep::Outcome::kFails:
      return "fails";
    case ComparisonStep::Outcome::kMalformed:
      return "malformed";
    case ComparisonStep::Outcome::kRefused:
      return "refused";
    case ComparisonStep::Outcome::kNotLookedAt:
      break;
  }
  return "not_looked_at";
}

std::string NameOf(const Nearness& nearness) {
  switch (nearness.mKind) {
    case Nearness::Kind::kHit:
      return "hit";
    case Nearness::Kind::kDependency:
      return "dependency";
    case Nearness::Kind::kVersion:
      return "version";
    case Nearness::Kind::kValue:
      return "value";
    case Nearness::Kind::kName:
      return "name";
    case Nearness::Kind::kDependencyLost:
      return "dependency_lost";
    case Nearness::Kind::kFar:
      break;
  }
  return "far";
}

json::Dictionary WriteFile(const FileFacts& file) {
  json::Dictionary step = Step("path");
  json::Set(step, "path", file.mPath);
  json::Set(step, "outcome", file.IsNotRecorded() ? std::string("not_recorded") : NameOf(file.mOutcome));
  return step;
}

json::Dictionary WriteComponent(const OSComponent& component) {
  json::Dictionary object;
  json::Set(object, "type", ComponentTypeToString(component.GetType()));
  json::Set(object, "name", component.GetName());
  if (component.GetType() == OSComponentType::kProperty) {
    json::Set(object, "value", component.GetPropertyValue());
  } else {
    json::Set(object, "version", component.GetVersion().ToString());
  }
  return object;
}

json::Dictionary WriteVersion(const VersionFacts& version) {
  json::Dictionary step = Step("version");
  json::Set(step, "version", version.mVersion.ToString());
  if (version.mMask) {
    json::Set(step, "mask", version.mMask.ToString());
    json::Set(step, "masked", version.mMasked.ToString());
  }
  if (version.mModulus) {
    json::Set(step, "modulus", version.mModulus.ToString());
    json::Set(step, "reduced", version.mCompared.ToString());
  }
  json::Set(step, "compared", version.mCompared.ToString());
  json::Set(step, "ranges", Number(version.mRangeCount));
  return step;
}

json::Dictionary WriteRange(const RangeFacts& range) {
  json::Dictionary step = Step("range");
  json::Set(step, "index", Number(range.mIndex));
  json::Set(step, "range", range.mRange.ToString());
  json::Set(step, "holds", range.mHolds);
  if (!range.mHolds) {
    json::Dictionary distance;
    json::Set(distance, "side", std::string(Describe(range.mDistance.mSide)));
    json::Set(distance, "part", Number(range.mDistance.mPart));
    json::Set(distance, "by", std::int64_t{range.mDistance.mBy});
    json::Set(step, "distance", std::move(distance));
  }
  return step;
}

json::Dictionary WriteName(const NameFacts& name) {
  json::Dictionary step = Step("name");
  json::Set(step, "outcome", NameOf(name.mOutcome));
  json::Set(step, "taken", !name.mIsAside);
  if (!name.mReason.empty()) json::Set(step, "reason", name.mReason);
  return step;
}

json::Dictionary WriteComparison(const ComparisonFacts& comparison) {
  json::Dictionary step = Step("comparison");
  json::Set(step, "operator", std::string(KeyOfOperator(comparison.mOperator)));
  json::Set(step, "value", comparison.mValue);
  json::Set(step, "operand", comparison.mOperand);
  json::Set(step, "outcome", NameOf(comparison.mOutcome));
  if (comparison.mIntegerValue) json::Set(step, "integer_value", *comparison.mIntegerValue);
  if (comparison.mIntegerOperand) json::Set(step, "integer_operand", *comparison.mIntegerOperand);
  if (!comparison.mReason.empty()) json::Set(step, "reason", comparison.mReason);
  return step;
}

json::Dictionary WriteExplanation(const Explanation& explanation, const std::optional<FileFacts>& file);

json::Dictionary WriteDependency(const DependencyFacts& dependency) {
  json::Dictionary step = Step("dependency");
  json::Set(step, "index", Number(dependency.mIndex));
  json::Set(step, "type", ComponentTypeToString(dependency.mType));
  json::Set(step, "name", dependency.mName);
  json::Set(step, "found", dependency.mFoundSomething);
  json::Set(step, "remembered", dependency.mIsRemembered);
  if (dependency.mFile) json::Set(step, "path", WriteFile(*dependency.mFile));
  json::Array candidates;
  for (const Explanation& candidate : dependency.mCandidates) {
    candidates.emplace_back(WriteExplanation(candidate, std::nullopt));
  }
  json::Set(step, "candidates", std::move(candidates));
  json::Set(step, "candidates_left_out", Number(dependency.mCandidatesLeftOut));
  return step;
}

json::Array WriteSteps(const Explanation& explanation, const std::optional<FileFacts>& file) {
  json::Array steps;
  if (file) steps.emplace_back(WriteFile(*file));
  if (explanation.mForced) {
    json::Dictionary step = Step("forced");
    json::Set(step, "by", std::string(*explanation.mForced == MatchForce::kByType ? "type" : "name"));
    steps.emplace_back(std::move(step));
  }
  if (explanation.mVersion) steps.emplace_back(WriteVersion(*explanation.mVersion));
  for (const RangeFacts& range : explanation.mRanges) steps.emplace_back(WriteRange(range));
  if (explanation.mName) steps.emplace_back(WriteName(*explanation.mName));
  for (const ComparisonFacts& comparison : explanation.mComparisons) {
    steps.emplace_back(WriteComparison(comparison));
  }
  for (const DependencyFacts& dependency : explanation.mDependencies) {
    steps.emplace_back(WriteDependency(dependency));
  }
  return steps;
}

json::Dictionary WriteExplanation(const Explanation& explanation, const std::optional<FileFacts>& file) {
  json::Dictionary object;
  json::Set(object, "component", WriteComponent(*explanation.mComponent));
  json::Set(object, "hit", explanation.IsHit());
  if (!explanation.IsHit()) {
    json::Set(object, "failed", std::string(NameOfVerdict(explanation.mVerdict)));
    json::Set(object, "why", DescribeMiss(explanation));
  }
  json::Set(object, "near", NameOf(explanation.mNearness));
  json::Set(object, "steps", WriteSteps(explanation, file));
  json::Set(object, "ranges_left_out", Number(explanation.mRangesLeftOut));
  json::Set(object, "dependencies_left_out", Number(explanation.mDependenciesLeftOut));
  json::Set(object, "dependencies_not_asked", Number(explanation.mDependenciesNotAsked));
  if (explanation.mWasAskedAside) {
    json::Set(object, "dependencies_would_hold", !explanation.mFailsAside.has_value());
  }
  return object;
}

void WriteRule(const ToldRule& rule, json::Dictionary& object) {
  json::Set(object, "rule", Number(rule.mIndex));
  json::Set(object, "rule_name", rule.mName);
  json::Set(object, "rule_type", ComponentTypeToString(rule.mType));
  json::Set(object, "rule_id", rule.mID);
}

json::Array WriteAll(const std::vector<ToldExplanation>& explanations) {
  json::Array array;
  for (const ToldExplanation& told : explanations) {
    json::Dictionary object = WriteExplanation(told.mSteps, told.mRule.mFile);
    WriteRule(told.mRule, object);
    if (!told.mSteps.IsHit()) json::Set(object, "hit_when", DescribeWayToHit(told));
    array.emplace_back(std::move(object));
  }
  return array;
}

json::Array WriteWithoutCandidates(const std::vector<ToldRule>& rules) {
  json::Array array;
  for (const ToldRule& rule : rules) {
    json::Dictionary object;
    WriteRule(rule, object);
    if (rule.mFile) json::Set(object, "path", WriteFile(*rule.mFile));
    array.emplace_back(std::move(object));
  }
  return array;
}

json::Dictionary WriteCounts(const Explained& explained) {
  json::Dictionary counts;
  json::Set(counts, "hits", Number(explained.mHitCount));
  json::Set(counts, "near_misses", Number(explained.mNearCount));
  json::Set(counts, "misses", Number(explained.MissCount()));
  json::Dictionary failed;
  for (std::size_t index = 1; index < explained.mVerdicts.size(); ++index) {
    json::Set(failed, NameOfVerdict(static_cast<MatchVerdict>(index)), Number(explained.mVerdicts[index]));
  }
  json::Set(counts, "failed", std::move(failed));
  return counts;
}

}  // namespace

std::string WriteJson(const Explained& explained, const ExplainHead& head) {
  json::Array forced;
  if (explained.mQuestion.mForcesByType) forced.emplace_back(std::string("type"));
  if (explained.mQuestion.mForcesByName) forced.emplace_back(std::string("name"));
  json::Array rules;
  for (const std::size_t rule : explained.mQuestion.mRules) rules.emplace_back(Number(rule));
  json::Array components;
  for (const std::string& name : explained.mQuestion.mComponents) components.emplace_back(name);
  json::Dictionary document;
  json::Set(document, "explain_version", std::int64_t{1});
  json::Set(document, "blocklist", head.mBlocklist);
  json::Set(document, "machine", head.mMachine);
  json::Set(document, "rules", Number(explained.mRuleCount));
  json::Set(document, "forced", std::move(forced));
  json::Set(document, "asked_rules", std::move(rules));
  json::Set(document, "asked_components", std::move(components));
  json::Set(document, "counts", WriteCounts(explained));
  json::Set(document, "hits", WriteAll(explained.mHits));
  json::Set(document, "misses", WriteAll(explained.mMisses));
  json::Set(document, "without_candidates", WriteWithoutCandidates(explained.mWithoutCandidates));
  return json::Serialise(document) + "\n";
}

}  // namespace authoring
