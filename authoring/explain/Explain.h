// Explains why the rules of a blocklist hit the components of a machine, or do not.
//
//   const Explained explained = Explain(rules, registry, {});
//   for (const std::string& line : DescribeAsText(explained)) ...
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "authoring/explain/Explanation.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

/// What is asked. Where no rule or no component is named, all are meant.
struct ExplainQuestion {
  std::set<std::size_t> mRules{};       ///< the elements of "blocklist" that are asked about
  std::set<std::string> mComponents{};  ///< the names that are asked about
  bool mForcesByType = false;           ///< as the debug settings say
  bool mForcesByName = false;
  FileSource mFiles = FileSource::kDisk;
};

/// A rule of the list, as it is told of.
struct ToldRule {
  std::size_t mIndex = 0;  ///< the element of "blocklist", counted from 0
  std::string mName;
  OSComponentType mType = OSComponentType::kInvalid;
  std::string mID;
  std::optional<FileFacts> mFile;  ///< of a file rule
};

/// A rule and one of its candidates.
struct ToldExplanation {
  ToldRule mRule;
  Explanation mSteps;
};

/// What is told, and how much there was.
struct Explained {
  static constexpr std::size_t kVerdictCount = 6;

  ExplainQuestion mQuestion;
  std::vector<ToldExplanation> mHits;        ///< in the order of the rules
  std::vector<ToldExplanation> mMisses;      ///< the nearest first
  std::vector<ToldRule> mWithoutCandidates;  ///< of the rules that were asked about
  std::size_t mRuleCount = 0;                ///< of the list
  std::size_t mHitCount = 0;
  std::size_t mNearCount = 0;  ///< misses that are near, told or not
  /// Of all pairs of a rule and a candidate that were asked about, by verdict.
  std::array<std::size_t, kVerdictCount> mVerdicts{};

  [[nodiscard]] std::size_t MissCount() const;
};

/// Matches the rules, as a report does, and explains. Without a question about rules only near misses are
/// told. Of what there is to tell it keeps so much as a person reads: at most 20 hits and 10 misses and 3 of
/// either for each rule, or 50 of either when something was asked. Main thread only.
[[nodiscard]] Explained Explain(const std::vector<qelsystemcompatibilityreport::SCRRule>& rules,
                                const qelcore::utility::OSComponentRegistry& registry,
                                const ExplainQuestion& question);

}  // namespace authoring
