#include "authoring/explain/VersionDistance.h"

#include <array>

namespace authoring {

namespace {

/// Digit by digit, from the last one on, as on paper. `left` is not less.
VersionNumbers Subtract(const VersionNumbers& left, const VersionNumbers& right) {
  VersionNumbers difference{};
  std::uint64_t borrowed = 0;
  for (std::size_t index = left.size(); index-- > 0;) {
    const std::uint64_t taken = right[index] + borrowed;
    borrowed = left[index] < taken ? 1 : 0;
    difference[index] = static_cast<std::uint32_t>((borrowed << 32U) + left[index] - taken);
  }
  return difference;
}

VersionDistance Between(const VersionNumbers& version, const VersionNumbers& end,
                        VersionDistance::Side side) {
  std::size_t part = 0;
  while (part + 1 < version.size() && version[part] == end[part]) ++part;
  const std::uint32_t by = version[part] < end[part] ? end[part] - version[part] : version[part] - end[part];
  return {side, part, by,
          side == VersionDistance::Side::kBelow ? Subtract(end, version) : Subtract(version, end)};
}

}  // namespace

std::strong_ordering operator<=>(const VersionDistance& left, const VersionDistance& right) {
  const bool isLeftOutside = left.mSide != VersionDistance::Side::kWithin;
  const bool isRightOutside = right.mSide != VersionDistance::Side::kWithin;
  if (isLeftOutside != isRightOutside) return isLeftOutside <=> isRightOutside;
  if (left.mDifference != right.mDifference) return left.mDifference <=> right.mDifference;
  return left.mSide <=> right.mSide;
}

VersionDistance DistanceTo(const qelsystemcompatibilityreport::VersionRange& range,
                           const qelcore::utility::OSComponentVersion& version) {
  const VersionSpan span = SpanOf(range);
  const VersionNumbers numbers = NumbersOf(version);
  if (numbers < span.mFirst) return Between(numbers, span.mFirst, VersionDistance::Side::kBelow);
  if (numbers > span.mLast) return Between(numbers, span.mLast, VersionDistance::Side::kAbove);
  return {};
}

const char* Describe(VersionDistance::Side side) {
  switch (side) {
    case VersionDistance::Side::kBelow:
      return "below";
    case VersionDistance::Side::kAbove:
      return "above";
    case VersionDistance::Side::kWithin:
      break;
  }
  return "within";
}

std::string Describe(const VersionDistance& distance) {
  constexpr std::array<const char*, 4> kNumbers = {"first", "second", "third", "fourth"};
  if (distance.mSide == VersionDistance::Side::kWithin) return "within";
  const bool isBelow = distance.mSide == VersionDistance::Side::kBelow;
  return std::to_string(distance.mBy) + (isBelow ? " below its beginning" : " above its end") + " in the " +
         kNumbers[distance.mPart] + " number";
}

}  // namespace authoring
