// Versions and ranges: lines of text, read as the ones and as the others and compared with each other.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "qelsystemcompatibilityreport/VersionRange.h"
#include "tests/fuzz/support/Require.h"
#include "tests/support/NaiveMatcher.h"

namespace {

using fuzz::Require;
using qelsystemcompatibilityreport::OSComponentVersion;
using qelsystemcompatibilityreport::VersionRange;

/// So many lines are looked at: all pairs are compared.
constexpr std::size_t kMostLines = 8;

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (lines.size() < kMostLines) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

bool IsLike(const OSComponentVersion& version, const testsupport::NaiveVersion& naive) {
  return static_cast<bool>(version) == naive.mIsSet && version.mVersionW == naive.mParts[0] &&
         version.mVersionX == naive.mParts[1] && version.mVersionY == naive.mParts[2] &&
         version.mVersionZ == naive.mParts[3];
}

void CheckReading(const std::string& text) {
  const OSComponentVersion version(text);
  Require(IsLike(version, testsupport::ReadNaiveVersion(text)), "both readings of a version agree");
  const OSComponentVersion again(version.ToString());
  Require(again == version && static_cast<bool>(again) == static_cast<bool>(version),
          "a written version reads back");

  const VersionRange range(text);
  const testsupport::NaiveRange naive = testsupport::ReadNaiveRange(text);
  Require(IsLike(range.GetMinVersion(), naive.mMinimum) && IsLike(range.GetMaxVersion(), naive.mMaximum),
          "both readings of a range agree");
  const VersionRange rangeAgain(range.ToString());
  Require(rangeAgain == range, "a written range reads back");
}

auto Parts(const OSComponentVersion& version) {
  return std::tuple(version.mVersionW, version.mVersionX, version.mVersionY, version.mVersionZ);
}

void CheckOrder(const OSComponentVersion& left, const OSComponentVersion& right) {
  Require((left <= right) == (Parts(left) <= Parts(right)), "versions are ordered part by part");
  Require((left >= right) == (right <= left), "the order has two directions");
  Require(left <= right || right <= left, "any two versions have an order");
  Require((left == right) == (left <= right && right <= left), "the order and equality agree");
  const OSComponentVersion masked = left & right;
  Require(masked <= left && (left & OSComponentVersion("+")) == left, "a mask only clears");
  const OSComponentVersion reduced = left % right;
  Require(reduced <= left && (left % OSComponentVersion()) == OSComponentVersion(),
          "a modulus only takes away");
}

/// What the text of a range means for one version.
bool ShouldHold(const VersionRange& range, const OSComponentVersion& version) {
  const OSComponentVersion minimum = range.GetMinVersion();
  const OSComponentVersion maximum = range.GetMaxVersion();
  if (!minimum && !maximum) return true;
  if (!maximum) return Parts(version) == Parts(minimum);
  return Parts(minimum) <= Parts(version) && Parts(version) <= Parts(maximum);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> lines = Lines(std::string(data, data + size));
  for (const std::string& line : lines) CheckReading(line);
  for (const std::string& left : lines) {
    for (const std::string& right : lines) {
      const OSComponentVersion version(left);
      CheckOrder(version, OSComponentVersion(right));
      const VersionRange range(right);
      Require(range.IsVersionInRange(version) == ShouldHold(range, version), "a range holds what lies in it");
    }
  }
  return 0;
}
