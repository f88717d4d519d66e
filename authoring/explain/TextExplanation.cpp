#include <algorithm>
#include <array>
#include <utility>

#include "authoring/explain/Outputs.h"
#include "authoring/explain/Sentences.h"
#include "authoring/model/Words.h"

namespace authoring {

using qelcore::utility::ComponentTypeToString;

namespace {

constexpr const char* kPassed = "ok";
constexpr const char* kFailed = "NO";
constexpr const char* kNotMade = "--";

std::string Count(std::size_t number, const std::string& one, const std::string& many) {
  return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

class TextWriter {
 public:
  /// Whole trees of the dependencies that find something are for who asks for a rule or a component.
  TextWriter(std::vector<std::string>& lines, bool isBrief) : mLines(lines), mIsBrief(isBrief) {}

  void Write(const ToldExplanation& told) {
    const Explanation& steps = told.mSteps;
    mLines.emplace_back();
    mLines.push_back(std::string(steps.IsHit() ? "HIT   " : "MISS  ") + DescribeRule(told.mRule) + " on " +
                     DescribeComponent(*steps.mComponent));
    if (!steps.IsHit()) Add("by " + ByWhat(steps.mVerdict) + ": " + DescribeMiss(steps));
    if (told.mRule.mFile) WriteFile(*told.mRule.mFile);
    WriteSteps(steps);
    if (!steps.IsHit()) Add("It is a hit when " + DescribeWayToHit(told) + ".");
  }

  void WriteWithoutCandidates(const ToldRule& rule) {
    mLines.emplace_back();
    mLines.push_back("MISS  " + DescribeRule(rule));
    if (rule.mFile) {
      WriteFile(*rule.mFile);
    } else {
      Add("the machine has no component of the kind " + ComponentTypeToString(rule.mType));
    }
  }

 private:
  static std::string DescribeRule(const ToldRule& rule) {
    return "rule " + std::to_string(rule.mIndex) + " " + Quoted(rule.mName);
  }

  static std::string ByWhat(MatchVerdict verdict) {
    return verdict == MatchVerdict::kPropertiesOff ? "its kind" : std::string(NameOfVerdict(verdict));
  }

  void Add(const std::string& text) { mLines.push_back(std::string(mIndent, ' ') + text); }

  void AddStep(const char* mark, std::string subject, const std::string& text) {
    constexpr std::size_t kWidth = 12;
    if (subject.size() < kWidth) subject.resize(kWidth, ' ');
    Add(std::string(mark) + "  " + subject + "  " + text);
  }

  void WriteFile(const FileFacts& file) {
    AddStep(file.IsThere() ? kPassed : kFailed, "path", DescribeFile(file));
  }

  void WriteSteps(const Explanation& steps) {
    if (steps.mForced == MatchForce::kByType) {
      AddStep(kPassed, "forced",
              "a debug setting makes every component of the kind a hit; nothing was tested");
      return;
    }
    if (steps.mForced == MatchForce::kByName) {
      AddStep(kNotMade, "version", "a debug setting keeps versions from being looked at");
    }
    if (steps.mVersion) WriteVersion(steps);
    if (steps.mName) WriteName(*steps.mName, steps);
    for (const ComparisonFacts& comparison : steps.mComparisons) WriteComparison(comparison, steps);
    WriteDependencies(steps);
  }

  void WriteVersion(const Explanation& steps) {
    const VersionFacts& version = *steps.mVersion;
    std::string text = version.mVersion ? version.mVersion.ToString() : "not known";
    if (version.mMask) text += ", mask " + version.mMask.ToString() + " makes " + version.mMasked.ToString();
    if (version.mModulus) {
      text += ", modulus " + version.mModulus.ToString() + " makes " + version.mCompared.ToString();
    }
    const bool isFailed = steps.mVerdict == MatchVerdict::kVersion;
    if (version.mRangeCount == 0) text += ": the rule is about every version";
    AddStep(isFailed ? kFailed : kPassed, "version", text);
    for (const RangeFacts& range : steps.mRanges) {
      const std::string outcome = range.mHolds ? " holds it" : ": " + Describe(range.mDistance);
      AddStep(range.mHolds ? kPassed : kFailed, "range " + std::to_string(range.mIndex),
              Quoted(range.mRange.ToString()) + outcome);
    }
    if (steps.mRangesLeftOut > 0) {
      AddStep(kFailed, "", Count(steps.mRangesLeftOut, "range", "ranges") + " farther away");
    }
  }

  void WriteName(const NameFacts& name, const Explanation& steps) {
    if (name.mIsAside) {
      AddStep(kNotMade, "name",
              std::string("not compared; it ") + (name.Matches() ? "would match" : "would not match"));
      return;
    }
    std::string text;
    switch (name.mOutcome) {
      case NameStep::Outcome::kEqual:
        text = "the same";
        break;
      case NameStep::Outcome::kMatches:
        text = "the rule's expression matches all of it";
        break;
      case NameStep::Outcome::kDiffers:
        text = steps.mComponent->GetType() == OSComponentType::kProperty
                   ? "another one"
                   : "another one, and as an expression the rule's does not match all of it";
        text += name.mHint;
        break;
      default:
        text = DescribeMiss(steps);
    }
    AddStep(name.Matches() ? kPassed : kFailed, "name", text);
  }

  void WriteComparison(const ComparisonFacts& comparison, const Explanation& steps) {
    const std::string subject(KeyOfOperator(comparison.mOperator));
    const std::string value =
        comparison.mIntegerValue && std::to_string(*comparison.mIntegerValue) != comparison.mValue
            ? Quoted(comparison.mValue) + ", read as " + std::to_string(*comparison.mIntegerValue) + ","
            : Quoted(comparison.mValue);
    switch (comparison.mOutcome) {
      case ComparisonStep::Outcome::kHolds:
        AddStep(kPassed, subject, value + " is " + DescribeDemand(comparison));
        break;
      case ComparisonStep::Outcome::kFails:
        AddStep(kFailed, subject, value + " is not " + DescribeDemand(comparison));
        break;
      case ComparisonStep::Outcome::kMalformed:
      case ComparisonStep::Outcome::kRefused:
        AddStep(kFailed, subject, DescribeFailure(comparison));
        break;
      case ComparisonStep::Outcome::kNotLookedAt:
        AddStep(kNotMade, subject,
                Quoted(comparison.mOperand) + " is not looked at: " +
                    (HasTextComparison(steps) ? "comparisons of texts decide alone"
                                              : "an earlier one has failed"));
        break;
    }
  }

  static bool HasTextComparison(const Explanation& steps) {
    for (const ComparisonFacts& comparison : steps.mComparisons) {
      if (!KeyOfOperator(comparison.mOperator).starts_with('i')) return true;
    }
    return false;
  }

  void WriteDependencies(const Explanation& steps) {
    for (const DependencyFacts& dependency : steps.mDependencies) WriteDependency(dependency);
    if (steps.mDependenciesLeftOut > 0) {
      AddStep(kPassed, "",
              Count(steps.mDependenciesLeftOut, "more dependency finds", "more dependencies find") +
                  " something");
    }
    if (steps.mDependenciesNotAsked == 0) return;
    const bool isOne = steps.mDependenciesNotAsked == 1;
    std::string text = isOne ? "not asked" : std::to_string(steps.mDependenciesNotAsked) + ", not asked";
    if (steps.mFailsAside) {
      const std::string which = isOne ? "it" : "dependency " + std::to_string(*steps.mFailsAside);
      text += "; " + which + " would find nothing";
    } else if (steps.mWasAskedAside) {
      text += isOne ? "; it would find something" : "; each would find something";
    }
    AddStep(kNotMade, isOne ? "dependency" : "dependencies", text);
  }

  static std::string DescribeFound(const DependencyFacts& dependency) {
    const bool isKept = !dependency.mCandidates.empty() && dependency.mCandidates.front().IsHit();
    return isKept ? DescribeComponent(*dependency.mCandidates.front().mComponent) : "something";
  }

  void WriteDependency(const DependencyFacts& dependency) {
    const std::string subject = "dependency " + std::to_string(dependency.mIndex);
    const std::string rule = "[" + ComponentTypeToString(dependency.mType) + "] " + Quoted(dependency.mName);
    AddStep(dependency.mFoundSomething ? kPassed : kFailed, subject,
            rule + (dependency.mFoundSomething ? " finds " + DescribeFound(dependency) : " finds nothing") +
                (dependency.mIsRemembered ? ", as for an earlier component" : ""));
    if (mIsBrief && dependency.mFoundSomething) return;
    mIndent += 4;
    if (dependency.mFile) WriteFile(*dependency.mFile);
    std::size_t leftOut = dependency.mCandidatesLeftOut;
    for (const Explanation& candidate : dependency.mCandidates) {
      if (mIsBrief && candidate.mNearness.mKind == Nearness::Kind::kFar) {
        ++leftOut;
        continue;
      }
      Add(std::string(candidate.IsHit() ? "hit   " : "miss  ") + DescribeComponent(*candidate.mComponent) +
          (candidate.IsHit() ? "" : ": " + DescribeMiss(candidate)));
      mIndent += 6;
      WriteSteps(candidate);
      mIndent -= 6;
    }
    const bool isFirst = leftOut == dependency.mCandidates.size() + dependency.mCandidatesLeftOut;
    if (leftOut > 0 && isFirst) {
      Add(Count(leftOut, "component of the kind, not near", "components of the kind, none of them near"));
    } else if (leftOut > 0) {
      Add(Count(leftOut, "more component", "more components"));
    } else if (isFirst && !dependency.mFile && !dependency.mIsRemembered) {
      Add("the machine has no component of the kind");
    }
    mIndent -= 4;
  }

  std::vector<std::string>& mLines;
  bool mIsBrief;
  std::size_t mIndent = 6;
};

/// What there is beyond what is told; empty when that is nothing.
std::string CountRest(const Explained& explained) {
  std::string rest;
  const auto add = [&](std::size_t number, const std::string& one, const std::string& many) {
    if (number > 0) rest += (rest.empty() ? "" : ", ") + Count(number, one, many);
  };
  const auto isNear = [](const ToldExplanation& told) { return told.mSteps.mNearness.IsNear(); };
  const auto nearTold =
      static_cast<std::size_t>(std::count_if(explained.mMisses.begin(), explained.mMisses.end(), isNear));
  const std::size_t farCount = explained.MissCount() - explained.mNearCount;
  add(explained.mHitCount - explained.mHits.size(), "hit", "hits");
  add(explained.mNearCount - nearTold, "near miss", "near misses");
  add(farCount - (explained.mMisses.size() - nearTold), "other miss", "other misses");
  return rest;
}

}  // namespace

std::vector<std::string> DescribeAsText(const Explained& explained, const ExplainHead& head) {
  std::vector<std::string> lines;
  std::string first = head.mMachine + ": " + Count(explained.mHitCount, "hit", "hits") + ", " +
                      Count(explained.mNearCount, "near miss", "near misses") + ", " +
                      Count(explained.MissCount() - explained.mNearCount, "other miss", "other misses");
  lines.push_back(std::move(first));
  if (explained.mQuestion.mForcesByType || explained.mQuestion.mForcesByName) {
    lines.push_back(std::string("A debug setting is on: ") +
                    (explained.mQuestion.mForcesByType ? "every component of a rule's kind is a hit"
                                                       : "versions are not looked at"));
  }
  TextWriter writer(lines, explained.mQuestion.mRules.empty() && explained.mQuestion.mComponents.empty());
  for (const ToldExplanation& hit : explained.mHits) writer.Write(hit);
  for (const ToldExplanation& miss : explained.mMisses) writer.Write(miss);
  for (const ToldRule& rule : explained.mWithoutCandidates) writer.WriteWithoutCandidates(rule);

  const std::string rest = CountRest(explained);
  if (!rest.empty()) {
    lines.emplace_back();
    lines.push_back("Not shown: " + rest + ". --rule and --component tell more.");
  }
  return lines;
}

}  // namespace authoring
