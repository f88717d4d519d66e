// A blocklist as the least program keeps it: views of the parser's strings, versions as words, one table for
// all ranges and one for all dependencies.
#pragma once

#include <simdjson.h>
#include <xxhash.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/FloorVersion.h"

namespace benchmarks {

struct FloorRange {
  FloorVersion mMinimum;
  FloorVersion mMaximum;
};

struct FloorComparison {
  int mOperator = 0;  ///< 0 to 5 texts, 6 to 11 integers, 12 an expression
  std::string_view mOperand;
};

struct FloorTexts {
  std::string_view mMessage;
  std::string_view mURL;
};

/// What lies where in a table.
struct FloorSpan {
  std::uint32_t mBegin = 0;
  std::uint32_t mEnd = 0;
};

struct FloorRule {
  int mKind = -1;
  std::int32_t mLevel = 0;
  std::string_view mName;
  std::string_view mValue;
  FloorTexts mTexts;
  FloorVersion mVersion;
  FloorVersion mMask;
  FloorVersion mModulus;
  FloorSpan mRanges;
  FloorSpan mComparisons;
  FloorSpan mDependencies;  ///< of the table of dependencies
};

/// A well-formed blocklist. What is not well-formed is an exception, and no verdict.
class FloorList {
 public:
  /// Reads a file. The parser and the tables are used again by the next.
  void Read(const std::string& path);

  [[nodiscard]] const std::vector<FloorRule>& Rules() const { return mRules; }
  [[nodiscard]] const FloorRule& Dependency(std::uint32_t index) const { return mDependencies[index]; }
  [[nodiscard]] const FloorRange& Range(std::uint32_t index) const { return mRanges[index]; }
  [[nodiscard]] const FloorComparison& Comparison(std::uint32_t index) const { return mComparisons[index]; }
  [[nodiscard]] const FloorTexts& Defaults(int kind) const {
    return mDefaults[static_cast<std::size_t>(kind)];
  }

  /// The rule's hash, as if its texts were these.
  [[nodiscard]] XXH128_hash_t Hash(const FloorRule& rule, const FloorTexts& texts);

  /// The identifier of the list and of a registry of this hash.
  [[nodiscard]] XXH128_hash_t Identify(const XXH128_canonical_t& registry);

 private:
  [[nodiscard]] FloorRule ReadRule(simdjson::dom::object object);
  void ReadRanges(simdjson::dom::array texts);
  void ReadDefaults(simdjson::dom::object defaults);

  std::vector<char> mText;
  simdjson::dom::parser mParser;
  std::vector<FloorRule> mRules;
  std::vector<FloorRule> mDependencies;
  std::vector<FloorRange> mRanges;
  std::vector<FloorComparison> mComparisons;
  std::array<FloorTexts, 6> mDefaults;
  std::string_view mSecondWarning;
  std::string mBytes;
};

/// Appends what a component's own hash is made of.
void AppendComponentBytes(int kind, std::string_view name, const FloorVersion& version,
                          std::string_view value, std::string& bytes);

/// The text form of a hash.
[[nodiscard]] std::string FloorGuidText(XXH128_hash_t hash);

}  // namespace benchmarks
