// What an explanation says in words.
#pragma once

#include <string>
#include <string_view>

#include "authoring/explain/Explain.h"

namespace authoring {

/// "dependency", "version" and so on: the test that was failed first; "hit" for a hit.
[[nodiscard]] std::string_view NameOfVerdict(MatchVerdict verdict);

/// The operator's key in a rule: "igte".
[[nodiscard]] std::string_view KeyOfOperator(SCRPropertyOperator propertyOperator);

/// What the rule asks the value to be: "at least 16".
[[nodiscard]] std::string DescribeDemand(const ComparisonFacts& comparison);

/// Why a comparison fails, without a full stop: "the value 8192 is not less than 4096".
[[nodiscard]] std::string DescribeFailure(const ComparisonFacts& comparison);

/// Why a candidate is missed, without a full stop: "0.0.5.4601 is above 0.0.5.4000". Empty for a hit.
[[nodiscard]] std::string DescribeMiss(const Explanation& miss);

/// What would make a miss a hit, a sentence without its beginning: "a range holds 0.0.5.4601, ...". Empty
/// for a hit.
[[nodiscard]] std::string DescribeWayToHit(const ToldExplanation& miss);

/// What became of a file rule's path: "there is no file or directory /opt/x.so".
[[nodiscard]] std::string DescribeFile(const FileFacts& file);

/// A component as a line tells of it: "[Video] NVIDIA GeForce RTX 3060 v.31.0.15.4601".
[[nodiscard]] std::string DescribeComponent(const OSComponent& component);

}  // namespace authoring
