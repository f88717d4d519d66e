#include "qelsystemcompatibilityreport/VersionRange.h"

#include <string_view>

namespace qelsystemcompatibilityreport {

VersionRange::VersionRange(const OSComponentVersion& minimum, const OSComponentVersion& maximum)
    : mMinVersion(minimum), mMaxVersion(maximum) {}

VersionRange::VersionRange(const OSComponentVersion& version) : mMinVersion(version) {}

VersionRange::VersionRange(const std::string& text) {
  std::string compact;
  std::size_t hyphen = std::string::npos;
  for (const char character : text) {
    if (character == ' ') continue;  // Blanks only: a tab makes its piece no version.
    if (character == '-' && hyphen == std::string::npos) hyphen = compact.size();
    compact.push_back(character);
  }
  const std::string_view pieces = compact;
  mMinVersion = OSComponentVersion(pieces.substr(0, hyphen));
  if (hyphen != std::string::npos) mMaxVersion = OSComponentVersion(pieces.substr(hyphen + 1));
}

bool VersionRange::IsVersionInRange(const OSComponentVersion& version) const {
  if (!mMaxVersion) return !mMinVersion || version == mMinVersion;
  return version >= mMinVersion && version <= mMaxVersion;
}

std::string VersionRange::ToString() const {
  std::string text = mMinVersion.ToString();
  if (mMaxVersion) text += "-" + mMaxVersion.ToString();
  return text;
}

}  // namespace qelsystemcompatibilityreport
