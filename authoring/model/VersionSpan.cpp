#include "authoring/model/VersionSpan.h"

#include <algorithm>
#include <cstddef>

namespace authoring {

namespace {

using qelcore::utility::OSComponentVersion;

constexpr std::uint32_t kLargest = OSComponentVersion::kLargestPart;

std::optional<std::uint32_t> PartOf(const OSComponentVersion& version, std::size_t index) {
  if (!version) return std::nullopt;
  return NumbersOf(version)[index];
}

NumberFilter FilterOf(const OSComponentVersion& mask, const OSComponentVersion& modulus, std::size_t index) {
  return {PartOf(mask, index), PartOf(modulus, index)};
}

/// The next version in order; nothing after the last one.
std::optional<VersionNumbers> Next(VersionNumbers version) {
  for (std::size_t index = version.size(); index-- > 0;) {
    if (++version[index] != 0) return version;
  }
  return std::nullopt;
}

}  // namespace

VersionNumbers NumbersOf(const OSComponentVersion& version) {
  return {version.mVersionW, version.mVersionX, version.mVersionY, version.mVersionZ};
}

VersionSpan SpanOf(const qelsystemcompatibilityreport::VersionRange& range) {
  const OSComponentVersion minimum = range.GetMinVersion();
  const OSComponentVersion maximum = range.GetMaxVersion();
  VersionSpan span{NumbersOf(minimum), NumbersOf(maximum)};
  if (!maximum) span.mLast = minimum ? span.mFirst : VersionNumbers{kLargest, kLargest, kLargest, kLargest};
  return span;
}

std::vector<VersionSpan> Merge(std::vector<VersionSpan> spans) {
  std::erase_if(spans, [](const VersionSpan& span) { return span.IsEmpty(); });
  std::sort(spans.begin(), spans.end());
  std::vector<VersionSpan> merged;
  for (const VersionSpan& span : spans) {
    if (!merged.empty()) {
      VersionSpan& last = merged.back();
      const auto next = Next(last.mLast);
      if (!next || span.mFirst <= *next) {
        last.mLast = std::max(last.mLast, span.mLast);
        continue;
      }
    }
    merged.push_back(span);
  }
  return merged;
}

bool Covers(const std::vector<VersionSpan>& outer, const std::vector<VersionSpan>& inner) {
  auto place = outer.begin();
  for (const VersionSpan& span : inner) {
    while (place != outer.end() && place->mLast < span.mFirst) ++place;
    if (place == outer.end() || span.mFirst < place->mFirst || place->mLast < span.mLast) return false;
  }
  return true;
}

NumberFilter::NumberFilter(std::optional<std::uint32_t> mask, std::optional<std::uint32_t> modulus)
    : mBits(mask.value_or(kLargest)), mLargest(mBits) {
  if (!modulus) return;
  if (*modulus == 0) {
    mBits = 0;
    mLargest = 0;
  } else if (mBits >= *modulus) {
    // Of a mask that keeps the low bits every remainder is left. What is left of another one is not computed:
    // every remainder is taken for possible.
    mBits = kLargest;
    mLargest = *modulus - 1;
  }
}

std::optional<std::uint32_t> NumberFilter::LeastFrom(std::uint32_t number) const {
  if (number > mLargest) return std::nullopt;
  if ((number & ~mBits) == 0) return number;
  // A bit that the mask clears stands in the number: the number is raised at a bit above it, and what is
  // below is cleared.
  for (int bit = 0; bit < 32; ++bit) {
    const std::uint32_t raised = std::uint32_t{1} << bit;
    if ((mBits & raised) == 0 || (number & raised) != 0) continue;
    const std::uint32_t above = number & ~(raised | (raised - 1));
    if ((above & ~mBits) == 0) return above | raised;
  }
  return std::nullopt;
}

VersionFilter::VersionFilter(const OSComponentVersion& mask, const OSComponentVersion& modulus)
    : mNumbers{FilterOf(mask, modulus, 0), FilterOf(mask, modulus, 1), FilterOf(mask, modulus, 2),
               FilterOf(mask, modulus, 3)} {}

bool VersionFilter::MayReach(const VersionSpan& span) const {
  // The least version that can be left and is not below the first one.
  VersionNumbers least{};
  std::size_t index = 0;
  for (; index < least.size(); ++index) {
    const auto number = mNumbers[index].LeastFrom(span.mFirst[index]);
    if (!number) break;
    least[index] = *number;
    // Once a number is larger, the later ones are free and may be 0.
    if (*number > span.mFirst[index]) return least <= span.mLast;
  }
  if (index == least.size()) return least <= span.mLast;
  // Nothing suits here, so an earlier number has to be larger, the last one that can be.
  while (index-- > 0) {
    const auto number =
        span.mFirst[index] == kLargest ? std::nullopt : mNumbers[index].LeastFrom(span.mFirst[index] + 1);
    if (!number) continue;
    least[index] = *number;
    std::fill(least.begin() + static_cast<std::ptrdiff_t>(index) + 1, least.end(), 0U);
    return least <= span.mLast;
  }
  return false;
}

}  // namespace authoring
