#include "authoring/explain/Sentences.h"

#include <algorithm>
#include <array>

#include "authoring/explain/ControlCharacters.h"
#include "authoring/model/Matcher.h"
#include "authoring/model/NameShape.h"
#include "authoring/model/Words.h"

namespace authoring {

using qelcore::utility::ComponentTypeToString;

namespace {

std::string TextOf(const OSComponentVersion& version) {
  return version ? version.ToString() : "0.0.0.0";
}

/// Of a comparison that fails or holds, its two sides as they are compared.
std::string Side(const std::string& text, const std::optional<std::int64_t>& integer) {
  return integer ? std::to_string(*integer) : Quoted(text);
}

const ComparisonFacts* FirstFailed(const Explanation& miss) {
  const auto failed = std::find_if(miss.mComparisons.begin(), miss.mComparisons.end(),
                                   [](const ComparisonFacts& comparison) { return comparison.Failed(); });
  return failed == miss.mComparisons.end() ? nullptr : &*failed;
}

std::string DescribeVersionMiss(const Explanation& miss) {
  const VersionFacts& version = *miss.mVersion;
  const RangeFacts* const range = miss.NearestRange();
  if (!version.mVersion) return "its version is not known, and no range holds 0.0.0.0, which stands for that";
  if (range == nullptr) return "no range holds " + TextOf(version.mCompared);
  const std::string text = TextOf(version.mCompared);
  const OSComponentVersion minimum = range->mRange.GetMinVersion();
  const OSComponentVersion maximum = range->mRange.GetMaxVersion();
  if (maximum && !(minimum <= maximum))
    return "the range " + Quoted(range->mRange.ToString()) + " holds nothing";
  const bool isBelow = range->mDistance.mSide == VersionDistance::Side::kBelow;
  const OSComponentVersion end = isBelow || !maximum ? minimum : maximum;
  return text + (isBelow ? " is below " : " is above ") + TextOf(end);
}

std::string DescribeNameMiss(const Explanation& miss) {
  const NameFacts& name = *miss.mName;
  switch (name.mOutcome) {
    case NameStep::Outcome::kMalformed:
      return "the rule's name is no expression: " + ReasonOf(name.mReason);
    case NameStep::Outcome::kRefused:
      return "the rule's name is refused as an expression: " + ReasonOf(name.mReason);
    case NameStep::Outcome::kRuleHasNone:
      return "the rule has no name";
    case NameStep::Outcome::kComponentHasNone:
      return "the component has no name";
    case NameStep::Outcome::kEqual:
    case NameStep::Outcome::kMatches:
    case NameStep::Outcome::kDiffers:
      break;
  }
  return "the name does not match" + name.mHint;
}

std::string DescribeValueMiss(const Explanation& miss) {
  const ComparisonFacts* const failed = FirstFailed(miss);
  return failed == nullptr ? "the value does not satisfy the comparisons" : DescribeFailure(*failed);
}

/// An interval that holds the version, made of the nearest one.
std::string WidenedRange(const RangeFacts& range, const OSComponentVersion& version) {
  const OSComponentVersion minimum = range.mRange.GetMinVersion();
  const OSComponentVersion maximum = range.mRange.GetMaxVersion();
  const OSComponentVersion whole(version.mVersionW, version.mVersionX, version.mVersionY, version.mVersionZ);
  if (maximum && !(minimum <= maximum)) return VersionRange(maximum, minimum).ToString();
  if (range.mDistance.mSide == VersionDistance::Side::kBelow) {
    return VersionRange(whole, maximum).ToString();
  }
  return VersionRange(minimum, whole).ToString();
}

std::string DescribeWayToVersion(const Explanation& miss) {
  const VersionFacts& version = *miss.mVersion;
  const RangeFacts* const range = miss.NearestRange();
  if (!version.mVersion || range == nullptr) return "the rule has no ranges, or the range \"0.0.0.0\"";
  const std::string way = "a range holds " + TextOf(version.mCompared);
  if (!range->mRange.GetMaxVersion()) return way;
  const std::string widened = WidenedRange(*range, version.mCompared);
  if (!VersionRange(widened).IsVersionInRange(version.mCompared)) return way;
  return way + ": " + AsJson(widened) + " in place of " + AsJson(range->mRange.ToString());
}

std::string DescribeWayToName(const ToldExplanation& miss) {
  const std::string component = miss.mSteps.mComponent->GetName();
  switch (miss.mSteps.mName->mOutcome) {
    case NameStep::Outcome::kMalformed:
    case NameStep::Outcome::kRefused:
      return "the name is the component's whole name, " + AsJson(component) +
             ", or an expression for all of it that \"scr lint\" finds nothing wrong with";
    case NameStep::Outcome::kComponentHasNone:
      return "the component has a name";
    default:
      break;
  }
  if (miss.mRule.mType == OSComponentType::kProperty) {
    return "the name is the property's, " + AsJson(component) + ": expressions do not count for properties";
  }
  return RuleName(miss.mRule.mName).Advice(component);
}

std::string DescribeWayToValue(const Explanation& miss) {
  std::string demands;
  std::string others;
  for (const ComparisonFacts& comparison : miss.mComparisons) {
    if (!comparison.Failed()) continue;
    if (comparison.mOutcome == ComparisonStep::Outcome::kFails) {
      demands += (demands.empty() ? "the value is " : " and ") + DescribeDemand(comparison);
    } else {
      others += std::string(others.empty() ? "" : ", and ") + "the operand of " +
                Quoted(KeyOfOperator(comparison.mOperator)) +
                " is an expression that \"scr lint\" finds nothing wrong with, and matches the whole value";
    }
  }
  return demands + (demands.empty() || others.empty() ? "" : ", and ") + others;
}

std::string DescribeNothingThere(const FileFacts& file) {
  const std::string path = Quoted(file.mPath);
  switch (file.mSource) {
    case FileSource::kNotRecorded:
      return "not known: the snapshot has no \"files\", so " + path + " counts as not there";
    case FileSource::kRecorded:
      break;
    case FileSource::kDisk:
      return "there is no file or directory " + path;
  }
  const bool hasPlaceholder =
      file.mPath.find_first_of("%$") != std::string::npos || file.mPath.starts_with('~');
  return "the snapshot's \"files\" have no " + path +
         (hasPlaceholder ? "; they have to write a placeholder as the rule does" : "");
}

}  // namespace

std::string_view NameOfVerdict(MatchVerdict verdict) {
  constexpr std::array<std::string_view, Explained::kVerdictCount> kNames = {
      "hit", "properties_off", "version", "name", "value", "dependency"};
  return kNames.at(static_cast<std::size_t>(verdict));
}

std::string_view KeyOfOperator(SCRPropertyOperator propertyOperator) {
  constexpr std::array<std::string_view, 13> kKeys = {"eq",  "ne",  "lt",   "lte", "gt",   "gte",  "ieq",
                                                      "ine", "ilt", "ilte", "igt", "igte", "regex"};
  return kKeys.at(static_cast<std::size_t>(propertyOperator));
}

std::string DescribeDemand(const ComparisonFacts& comparison) {
  const std::string operand = Side(comparison.mOperand, comparison.mIntegerOperand);
  switch (comparison.mOperator) {
    case SCRPropertyOperator::kEqual:
    case SCRPropertyOperator::kIntegerEqual:
      return "equal to " + operand;
    case SCRPropertyOperator::kNotEqual:
    case SCRPropertyOperator::kIntegerNotEqual:
      return "other than " + operand;
    case SCRPropertyOperator::kLess:
      return "before " + operand + " in the order of texts";
    case SCRPropertyOperator::kLessOrEqual:
      return "up to " + operand + " in the order of texts";
    case SCRPropertyOperator::kGreater:
      return "after " + operand + " in the order of texts";
    case SCRPropertyOperator::kGreaterOrEqual:
      return "from " + operand + " on in the order of texts";
    case SCRPropertyOperator::kIntegerLess:
      return "less than " + operand;
    case SCRPropertyOperator::kIntegerLessOrEqual:
      return "at most " + operand;
    case SCRPropertyOperator::kIntegerGreater:
      return "more than " + operand;
    case SCRPropertyOperator::kIntegerGreaterOrEqual:
      return "at least " + operand;
    case SCRPropertyOperator::kRegularExpression:
      break;
  }
  return "one that the expression " + operand + " matches as a whole";
}

std::string DescribeFailure(const ComparisonFacts& comparison) {
  const std::string operand = "the operand of " + Quoted(KeyOfOperator(comparison.mOperator));
  switch (comparison.mOutcome) {
    case ComparisonStep::Outcome::kMalformed:
      return operand + " is no expression: " + ReasonOf(comparison.mReason);
    case ComparisonStep::Outcome::kRefused:
      return operand + " is refused as an expression: " + ReasonOf(comparison.mReason);
    default:
      break;
  }
  return "the value " + Side(comparison.mValue, comparison.mIntegerValue) + " is not " +
         DescribeDemand(comparison) + ControlCharacterHint("the operand", comparison.mOperand);
}

std::string DescribeMiss(const Explanation& miss) {
  switch (miss.mVerdict) {
    case MatchVerdict::kHit:
      break;
    case MatchVerdict::kPropertiesOff:
      return "this host does not take part with its properties";
    case MatchVerdict::kVersion:
      return DescribeVersionMiss(miss);
    case MatchVerdict::kName:
      return DescribeNameMiss(miss);
    case MatchVerdict::kValue:
      return DescribeValueMiss(miss);
    case MatchVerdict::kDependency: {
      const DependencyFacts& dependency = miss.mDependencies.back();
      return "dependency " + std::to_string(dependency.mIndex) + ", [" +
             ComponentTypeToString(dependency.mType) + "] " + Quoted(dependency.mName) +
             ", finds nothing on the machine" +
             (dependency.mFile && dependency.mFile->IsNotRecorded()
                  ? "; the snapshot has no \"files\", so no file is there"
                  : "");
    }
  }
  return {};
}

std::string DescribeWayToHit(const ToldExplanation& miss) {
  std::string way;
  switch (miss.mSteps.mVerdict) {
    case MatchVerdict::kHit:
      return {};
    case MatchVerdict::kPropertiesOff:
      way = "the host switches the feature of properties on";
      break;
    case MatchVerdict::kVersion:
      way = DescribeWayToVersion(miss.mSteps);
      if (miss.mSteps.mName && !miss.mSteps.mName->Matches()) way += "; and " + DescribeWayToName(miss);
      break;
    case MatchVerdict::kName:
      way = DescribeWayToName(miss);
      break;
    case MatchVerdict::kValue:
      way = DescribeWayToValue(miss.mSteps);
      break;
    case MatchVerdict::kDependency:
      way = "the machine has what the dependency asks for";
      break;
  }
  if (miss.mSteps.mFailsAside) {
    way += "; and dependency " + std::to_string(*miss.mSteps.mFailsAside) + " finds something";
  }
  return way;
}

std::string DescribeFile(const FileFacts& file) {
  switch (file.mOutcome) {
    case FileStep::Outcome::kNoPath:
      return "the rule has no path";
    case FileStep::Outcome::kUnknownPlaceholder:
      return "a placeholder of " + Quoted(file.mPath) + " is not set on this machine, or not closed";
    case FileStep::Outcome::kNothingThere:
      return DescribeNothingThere(file) + ControlCharacterHint("the path", file.mPath);
    case FileStep::Outcome::kDirectory:
      return Quoted(file.mPath) + " is a directory, which has no version";
    case FileStep::Outcome::kFile:
      break;
  }
  return Quoted(file.mPath) + " is there";
}

std::string DescribeComponent(const OSComponent& component) {
  std::string text = "[" + ComponentTypeToString(component.GetType()) + "] " + component.GetName();
  if (component.GetType() == OSComponentType::kProperty) return text + " : " + component.GetPropertyValue();
  if (component.GetVersion()) text += " v." + component.GetVersion().ToString();
  return text;
}

}  // namespace authoring
