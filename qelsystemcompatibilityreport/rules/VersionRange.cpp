#include "qelsystemcompatibilityreport/VersionRange.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "qelsystemcompatibilityreport/rules/VersionRangeText.h"

namespace qelsystemcompatibilityreport {

VersionRange::VersionRange(const OSComponentVersion& minimum, const OSComponentVersion& maximum)
    : mMinVersion(minimum), mMaxVersion(maximum) {}

VersionRange::VersionRange(const OSComponentVersion& version) : mMinVersion(version) {}

VersionRange::VersionRange(const std::string& text) : VersionRange(ReadVersionRange(text)) {}

VersionRange ReadVersionRange(std::string_view text) {
  // Blanks only: a tab makes its piece no version.
  std::array<char, 64> room{};
  std::string longText;
  if (text.find(' ') != std::string_view::npos) {
    if (text.size() > room.size()) longText.resize(text.size());
    char* const begin = longText.empty() ? room.data() : longText.data();
    text = {begin, std::remove_copy(text.begin(), text.end(), begin, ' ')};
  }
  const std::size_t hyphen = text.find('-');
  const OSComponentVersion minimum(text.substr(0, hyphen));
  if (hyphen == std::string_view::npos) return VersionRange(minimum);
  return {minimum, OSComponentVersion(text.substr(hyphen + 1))};
}

bool VersionRange::IsVersionInRange(const OSComponentVersion& version) const {
  if (!mMaxVersion) return !mMinVersion || version == mMinVersion;
  return version >= mMinVersion && version <= mMaxVersion;
}

std::string VersionRange::ToString() const {
  std::array<char, kLongestText> room{};
  return {room.data(), WriteTo(room.data())};
}

char* VersionRange::WriteTo(char* room) const {
  room = mMinVersion.WriteTo(room);
  if (!mMaxVersion) return room;
  *room++ = '-';
  return mMaxVersion.WriteTo(room);
}

}  // namespace qelsystemcompatibilityreport
