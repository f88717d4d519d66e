// The versions that a rule is about.
//
// A range is written as one text. Blanks do not count.
//
//   text                   holds                                 does not hold
//   "10.0.17763.1"         10.0.17763.1                          10.0.17763.2
//   "0.0.4.0-0.0.4.+"      0.0.4.0, 0.0.4.1195                   0.0.5.0
//   "-6.1.+"               5.0.0.0, 6.1.7601.0                   6.2.0.0
//   "5.0-"                 5.0.0.0 (the maximum is empty)        5.0.0.1
//   ""                     every version
//
// A rule's mask and modulus are no part of its ranges: they change the component's version before a range
// sees it.
#pragma once

#include <string>

#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

using qelcore::utility::OSComponentVersion;

/// One exact version, a closed interval, or, when both ends are empty, every version. A plain value.
class QELSCR_EXPORT VersionRange {
 public:
  /// From `minimum` to `maximum`, both included. An empty minimum holds everything up to the maximum; an
  /// empty maximum leaves the exact version `minimum`; both empty hold every version.
  VersionRange(const OSComponentVersion& minimum, const OSComponentVersion& maximum);

  /// The exact version; every version when it is empty.
  explicit VersionRange(const OSComponentVersion& version);

  /// Reads the text form. What stands before the first hyphen is the minimum, what follows it the maximum. A
  /// piece that is no version leaves its end empty. Never throws.
  explicit VersionRange(const std::string& text);

  VersionRange(const VersionRange&) = default;
  VersionRange& operator=(const VersionRange&) = default;
  ~VersionRange() = default;

  [[nodiscard]] OSComponentVersion GetMinVersion() const { return mMinVersion; }
  [[nodiscard]] OSComponentVersion GetMaxVersion() const { return mMaxVersion; }

  [[nodiscard]] bool IsVersionInRange(const OSComponentVersion& version) const;

  /// The text form: empty for the range of every version, else the minimum's text, followed by a hyphen and
  /// the maximum's text when there is a maximum. The constructor reads it back to an equal range.
  [[nodiscard]] std::string ToString() const;

  static constexpr std::size_t kLongestText = 2 * OSComponentVersion::kLongestText + 1;

  /// Writes what `ToString` gives to where `kLongestText` characters have room. Returns the text's end.
  char* WriteTo(char* room) const;

  friend bool operator==(const VersionRange& left, const VersionRange& right) {
    return left.mMinVersion == right.mMinVersion && left.mMaxVersion == right.mMaxVersion;
  }

 private:
  OSComponentVersion mMinVersion;
  OSComponentVersion mMaxVersion;
};

}  // namespace qelsystemcompatibilityreport
