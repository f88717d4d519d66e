// Ranges as sets of versions, and what a mask and a modulus leave of all versions.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/VersionRange.h"

namespace authoring {

/// The four numbers of a version, which order as versions do.
using VersionNumbers = std::array<std::uint32_t, 4>;

[[nodiscard]] VersionNumbers NumbersOf(const qelcore::utility::OSComponentVersion& version);

/// All versions from the first to the last one, both included; none when they are reversed.
struct VersionSpan {
  VersionNumbers mFirst{};
  VersionNumbers mLast{};

  [[nodiscard]] bool IsEmpty() const { return mLast < mFirst; }

  friend auto operator<=>(const VersionSpan&, const VersionSpan&) = default;
};

/// The versions that a range holds.
[[nodiscard]] VersionSpan SpanOf(const qelsystemcompatibilityreport::VersionRange& range);

/// The union of spans as the fewest spans, in order and apart from each other.
[[nodiscard]] std::vector<VersionSpan> Merge(std::vector<VersionSpan> spans);

/// Whether all of `inner` lies in `outer`; both merged.
[[nodiscard]] bool Covers(const std::vector<VersionSpan>& outer, const std::vector<VersionSpan>& inner);

/// What can be left of one number by a mask and a modulus.
class NumberFilter {
 public:
  /// Absent ones change nothing.
  NumberFilter(std::optional<std::uint32_t> mask, std::optional<std::uint32_t> modulus);

  /// The largest that can be left, or a larger number where that is costly to say.
  [[nodiscard]] std::uint32_t Largest() const { return mLargest; }

  /// The least that can be left and is not less than `number`; nothing when there is none. Where mask and
  /// modulus entangle, the number itself: it may or may not be left.
  [[nodiscard]] std::optional<std::uint32_t> LeastFrom(std::uint32_t number) const;

 private:
  std::uint32_t mBits;
  std::uint32_t mLargest;
};

/// What can be left of a version.
class VersionFilter {
 public:
  VersionFilter(const qelcore::utility::OSComponentVersion& mask,
                const qelcore::utility::OSComponentVersion& modulus);

  [[nodiscard]] const NumberFilter& operator[](std::size_t index) const { return mNumbers[index]; }

  /// Whether a version of the span may be left. A "no" is certain.
  [[nodiscard]] bool MayReach(const VersionSpan& span) const;

 private:
  std::array<NumberFilter, 4> mNumbers;
};

}  // namespace authoring
