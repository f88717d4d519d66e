// A second reading and matching of rules, as plain as it can be, to compare the real one with.
//
// It shares nothing with the library: rules and components are read from JSON values, versions are parsed
// here, expressions go to the standard library's default engine. It remembers nothing and is slow, and only
// short and harmless expressions may be given to it.
#pragma once

#include <any>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace testsupport {

struct NaiveVersion {
  bool mIsSet = false;
  std::array<std::uint32_t, 4> mParts{};
};

struct NaiveRange {
  NaiveVersion mMinimum;
  NaiveVersion mMaximum;
};

struct NaiveComponent {
  std::string mType;
  std::string mName;
  NaiveVersion mVersion;
  std::string mValue;
};

struct NaiveMachine {
  std::vector<NaiveComponent> mComponents;
  std::map<std::string, std::string> mFiles;  ///< versions by path
  bool mSupportsProperties = true;
};

struct NaiveRule {
  std::string mType;  ///< empty for a rule that cannot be read
  std::string mName;
  std::vector<NaiveRange> mRanges;
  NaiveVersion mMask;
  NaiveVersion mModulus;
  std::vector<NaiveRule> mDependencies;
  /// Operator and operand, in the order of evaluation.
  std::vector<std::pair<std::string, std::string>> mTextComparisons;
  std::vector<std::pair<std::string, std::string>> mIntegerComparisons;
  std::string mMessage;
  std::string mLink;
  std::string mLevel;
};

/// What came of one rule on one machine.
struct NaiveOutcome {
  /// The hit components, as their places in `mComponents`; a file is the place after the last.
  std::vector<std::size_t> mHits;
  /// The functions that logged an exception, in order.
  std::vector<std::string> mLogged;
};

/// Whether to loosen the matching, as the two debug settings do.
struct NaiveSwitches {
  bool mByType = false;
  bool mByName = false;
};

[[nodiscard]] NaiveVersion ReadNaiveVersion(const std::string& text);
[[nodiscard]] NaiveRange ReadNaiveRange(const std::string& text);
[[nodiscard]] NaiveComponent ReadNaiveComponent(const std::any& json);

/// Reads a rule into `rule` and says whether it is valid.
[[nodiscard]] bool ReadNaiveRule(const std::any& json, NaiveRule& rule);

[[nodiscard]] NaiveOutcome MatchNaively(const NaiveRule& rule, const NaiveMachine& machine,
                                        const NaiveSwitches& switches = {});

}  // namespace testsupport
