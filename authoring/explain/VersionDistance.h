// How far a version is from a range.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>

#include "authoring/model/VersionSpan.h"
#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

namespace authoring {

struct VersionDistance {
  enum class Side { kWithin, kBelow, kAbove };

  Side mSide = Side::kWithin;
  std::size_t mPart = 0;         ///< the first number in which version and end differ, from 0 to 3
  std::uint32_t mBy = 0;         ///< by how much they differ in it
  VersionNumbers mDifference{};  ///< of the two, each number being one digit

  /// The less the difference, the nearer.
  friend std::strong_ordering operator<=>(const VersionDistance& left, const VersionDistance& right);
  friend bool operator==(const VersionDistance&, const VersionDistance&) = default;
};

/// The distance to the end that is missed. A version misses a reversed range, which holds nothing, by its
/// lower end when it is below that, else by its upper end.
[[nodiscard]] VersionDistance DistanceTo(const qelsystemcompatibilityreport::VersionRange& range,
                                         const qelcore::utility::OSComponentVersion& version);

/// "within", "below" or "above".
[[nodiscard]] const char* Describe(VersionDistance::Side side);

/// "601 above its end in the fourth number", "within".
[[nodiscard]] std::string Describe(const VersionDistance& distance);

}  // namespace authoring
