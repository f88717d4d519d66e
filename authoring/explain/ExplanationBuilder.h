// Puts the steps of a match together, a candidate at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "authoring/explain/Explanation.h"
#include "authoring/explain/NameNearness.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

/// Hears of a match and hands on what each candidate of each rule came to. It holds one candidate at a time,
/// with at most so many of its ranges, its dependencies, and their candidates.
class ExplanationBuilder : public qelsystemcompatibilityreport::MatchObserver {
 public:
  static constexpr std::size_t kMostRanges = 5;
  static constexpr std::size_t kMostDependencies = 10;
  static constexpr std::size_t kMostCandidatesOfDependency = 3;
  /// Below one candidate, dependencies of dependencies included.
  static constexpr std::size_t kMostCandidatesBelow = 100;
  /// Dependencies of dependencies.
  static constexpr std::size_t kDeepest = 20;

  /// `files` is where the machine's come from.
  explicit ExplanationBuilder(FileSource files = FileSource::kDisk) : mFiles(files) {}

  bool BeginRule(std::size_t index, const qelsystemcompatibilityreport::SCRRule& rule) override;
  void EndRule(std::size_t hitCount) override;
  void OnFile(const qelsystemcompatibilityreport::FileStep& step) override;
  void BeginCandidate(const std::shared_ptr<OSComponent>& component) override;
  void OnForced(MatchForce force) override;
  void OnVersion(const qelsystemcompatibilityreport::VersionStep& step) override;
  void OnRange(const qelsystemcompatibilityreport::RangeStep& step) override;
  void OnName(const qelsystemcompatibilityreport::NameStep& step) override;
  void OnComparison(const ComparisonStep& step) override;
  void BeginDependency(std::size_t index, const qelsystemcompatibilityreport::SCRRule& dependency) override;
  void EndDependency(bool foundSomething, bool isRemembered) override;
  void OnDependenciesAside(std::optional<std::size_t> firstThatFindsNothing) override;
  void EndCandidate(MatchVerdict verdict) override;

 protected:
  /// Whether the steps of a rule are wanted.
  virtual bool WantsRule(std::size_t index, const qelsystemcompatibilityreport::SCRRule& rule) = 0;

  /// Whether those of a candidate of the present rule are.
  virtual bool WantsCandidate(const std::shared_ptr<OSComponent>& component) = 0;

  /// A candidate of the present rule is done. What it holds may be moved away.
  virtual void Take(Explanation& explanation) = 0;

  /// The present rule is done.
  virtual void EndOfRule() = 0;

  [[nodiscard]] std::size_t RuleIndex() const { return mRuleIndex; }
  [[nodiscard]] const qelsystemcompatibilityreport::SCRRule& Rule() const { return *mLevels.front().mRule; }
  [[nodiscard]] const RuleName& Name() const { return *mName; }
  [[nodiscard]] const std::optional<FileFacts>& File() const { return mFile; }

 private:
  /// The rule, or a dependency of a dependency, that is at work.
  struct Level {
    const qelsystemcompatibilityreport::SCRRule* mRule = nullptr;
    Explanation mCandidate;       ///< at work
    DependencyFacts mDependency;  ///< asked by it
    bool mIsKept = true;          ///< false below a candidate or dependency of which nothing is kept
  };

  [[nodiscard]] Explanation& Candidate() { return mLevels.back().mCandidate; }
  [[nodiscard]] bool IsKept() const { return mLevels.back().mIsKept && !mIsSkipped; }
  [[nodiscard]] Nearness Measure(const Explanation& candidate) const;
  void KeepNearest(DependencyFacts& dependency, Explanation& candidate);

  FileSource mFiles;
  std::size_t mRuleIndex = 0;
  std::optional<RuleName> mName;
  std::optional<FileFacts> mFile;
  std::vector<Level> mLevels;
  std::size_t mCandidatesBelow = 0;
  bool mIsSkipped = false;  ///< the candidate of the rule is not wanted
};

}  // namespace authoring
