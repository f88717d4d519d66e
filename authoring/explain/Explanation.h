// What the match had to say of one rule and one component, as far as it is worth telling.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "authoring/explain/NameNearness.h"
#include "authoring/explain/VersionDistance.h"
#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

namespace authoring {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::ComparisonStep;
using qelsystemcompatibilityreport::FileStep;
using qelsystemcompatibilityreport::MatchForce;
using qelsystemcompatibilityreport::MatchVerdict;
using qelsystemcompatibilityreport::NameStep;
using qelsystemcompatibilityreport::SCRPropertyOperator;
using qelsystemcompatibilityreport::VersionRange;

/// Where the files of a machine come from.
enum class FileSource {
  kDisk,         ///< the machine's own
  kRecorded,     ///< a snapshot's "files", which are compared as they are written
  kNotRecorded,  ///< a snapshot without them, for which no file exists
};

struct FileFacts {
  FileStep::Outcome mOutcome = FileStep::Outcome::kNoPath;
  std::string mPath;
  FileSource mSource = FileSource::kDisk;

  [[nodiscard]] bool IsThere() const {
    return mOutcome == FileStep::Outcome::kFile || mOutcome == FileStep::Outcome::kDirectory;
  }

  /// Whether the file may well be on the machine: nothing is known of its files.
  [[nodiscard]] bool IsNotRecorded() const {
    return mSource == FileSource::kNotRecorded && mOutcome == FileStep::Outcome::kNothingThere;
  }
};

struct VersionFacts {
  OSComponentVersion mVersion;
  OSComponentVersion mMask;
  OSComponentVersion mMasked;
  OSComponentVersion mModulus;
  OSComponentVersion mCompared;
  std::size_t mRangeCount = 0;
};

struct RangeFacts {
  std::size_t mIndex = 0;
  VersionRange mRange{OSComponentVersion()};
  bool mHolds = false;
  VersionDistance mDistance;
};

struct NameFacts {
  NameStep::Outcome mOutcome = NameStep::Outcome::kDiffers;
  bool mIsAside = false;
  std::string mReason;  ///< why an expression is malformed or refused
  std::string mHint{};  ///< what the rule's name is perhaps mistaken in; begins with a semicolon

  [[nodiscard]] bool Matches() const {
    return mOutcome == NameStep::Outcome::kEqual || mOutcome == NameStep::Outcome::kMatches;
  }
};

struct ComparisonFacts {
  SCRPropertyOperator mOperator = SCRPropertyOperator::kEqual;
  std::string mValue;
  std::string mOperand;
  ComparisonStep::Outcome mOutcome = ComparisonStep::Outcome::kNotLookedAt;
  std::optional<std::int64_t> mIntegerValue;
  std::optional<std::int64_t> mIntegerOperand;
  std::string mReason;

  /// Whether it keeps the candidate from being a hit.
  [[nodiscard]] bool Failed() const {
    return mOutcome != ComparisonStep::Outcome::kHolds && mOutcome != ComparisonStep::Outcome::kNotLookedAt;
  }
};

/// How near to a hit something came. The less, the nearer.
struct Nearness {
  /// All but the first and the last are near: a single test keeps them from being a hit.
  enum class Kind {
    kHit,
    kVersion,         ///< the version
    kValue,           ///< the value of a property
    kDependency,      ///< a dependency that nearly finds something
    kName,            ///< the name, which nearly matches
    kDependencyLost,  ///< a dependency that finds nothing near
    kFar,
  };

  Kind mKind = Kind::kFar;
  bool mIsVersionUnknown = false;
  VersionDistance mDistance;  ///< to the nearest range
  std::size_t mFailedComparisons = 0;
  std::uint64_t mValueDistance = 0;  ///< between the integers of the first comparison that fails
  NameNearness mName;

  [[nodiscard]] bool IsNear() const { return mKind != Kind::kHit && mKind != Kind::kFar; }

  friend auto operator<=>(const Nearness&, const Nearness&) = default;
};

struct DependencyFacts;

/// A candidate of a rule, with the steps that were made.
struct Explanation {
  std::shared_ptr<OSComponent> mComponent;
  MatchVerdict mVerdict = MatchVerdict::kHit;
  std::optional<MatchForce> mForced;
  std::optional<VersionFacts> mVersion;
  std::vector<RangeFacts> mRanges;  ///< of many the one that holds, or the nearest, in their order
  std::size_t mRangesLeftOut = 0;   ///< asked, and not among them
  std::optional<NameFacts> mName;
  std::vector<ComparisonFacts> mComparisons;  ///< those that were looked at first, in their order
  std::vector<DependencyFacts> mDependencies;
  std::size_t mDependenciesLeftOut = 0;    ///< asked and found, and not among them
  std::size_t mDependenciesNotAsked = 0;   ///< since an earlier test was failed
  bool mWasAskedAside = false;             ///< whether they were, for the explanation alone
  std::optional<std::size_t> mFailsAside;  ///< the first of them that then found nothing
  Nearness mNearness;

  [[nodiscard]] bool IsHit() const { return mVerdict == MatchVerdict::kHit; }

  /// The nearest of the ranges that were asked; null when there is none.
  [[nodiscard]] const RangeFacts* NearestRange() const;
};

/// A dependency that was asked, and its own candidates.
struct DependencyFacts {
  std::size_t mIndex = 0;
  OSComponentType mType = OSComponentType::kInvalid;
  std::string mName;
  bool mFoundSomething = false;
  bool mIsRemembered = false;
  std::optional<FileFacts> mFile;
  std::vector<Explanation> mCandidates;  ///< the nearest first
  std::size_t mCandidatesLeftOut = 0;
};

}  // namespace authoring
