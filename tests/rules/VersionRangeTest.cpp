#include "qelsystemcompatibilityreport/VersionRange.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::VersionRange;

OSComponentVersion Version(const char* text) {
  return OSComponentVersion(text);
}

struct Row {
  const char* mRange;
  std::vector<const char*> mHolds;
  std::vector<const char*> mDoesNotHold;
};

TEST(VersionRangeTest, HoldsAndDoesNotHold) {
  const Row rows[] = {
      // An exact version.
      {"10.0.17763.1", {"10.0.17763.1"}, {"10.0.17763.0", "10.0.17763.2", "10.0.17763", "10.1.17763.1", ""}},
      {"5", {"5", "5.0", "5.0.0.0"}, {"5.0.0.1", "4", "6"}},
      // An interval, both ends included.
      {"0.0.4.0-0.0.4.9", {"0.0.4.0", "0.0.4.5", "0.0.4.9"}, {"0.0.3.4294967295", "0.0.4.10", "0.0.5.0", ""}},
      {"0.0.4.0-0.0.4.+", {"0.0.4.0", "0.0.4.1195", "0.0.4.+"}, {"0.0.3.+", "0.0.5.0"}},
      {"0.0.4.0 - 0.0.4.+", {"0.0.4.0", "0.0.4.1195"}, {"0.0.5.0"}},
      {"9.24.30.4800-10.+", {"9.24.30.4800", "9.25", "10.0.17763.1"}, {"9.24.30.4799", "11", "9.3.0.0"}},
      {"5.0-+", {"5", "6.1", "+"}, {"4.+"}},
      // Up to a maximum.
      {"-6.1.+", {"", "0.0.0.0", "5", "6.1", "6.1.7601.0"}, {"6.2", "10"}},
      // A hyphen that nothing follows leaves an exact version.
      {"5.0-", {"5.0.0.0"}, {"5.0.0.1", "6", "4"}},
      // Every version.
      {"", {"", "0.0.0.0", "1.2.3.4", "+"}, {}},
      {"   ", {"", "0.0.0.0", "1.2.3.4"}, {}},
      {"-", {"", "0.0.0.0", "1.2.3.4"}, {}},
      // Ends that are no versions are empty ends.
      {"beta", {"", "1.2.3.4"}, {}},
      {"1.0-beta", {"1.0"}, {"1.1", "0.9"}},
      {"beta-2.0", {"", "1.0", "2.0"}, {"2.0.0.1"}},
      {"1.0\t-2.0", {"", "0.5", "2.0"}, {"2.0.0.1"}},
      // What follows the second hyphen belongs to the maximum, which is then no version.
      {"1.0-2.0-3.0", {"1.0"}, {"2.0", "3.0", "1.0.0.1"}},
      // Reversed ends hold nothing.
      {"2.0-1.0", {}, {"1.0", "1.5", "2.0", ""}},
      // "0.0.0.0" is a version, other than the empty one.
      {"0.0.0.0", {"0.0.0.0", ""}, {"0.0.0.1"}},
      {"0.0.0.0-0.0.0.0", {"0.0.0.0", ""}, {"0.0.0.1"}},
  };
  for (const Row& row : rows) {
    const VersionRange range{std::string(row.mRange)};
    for (const char* const version : row.mHolds) {
      EXPECT_TRUE(range.IsVersionInRange(Version(version))) << '"' << row.mRange << "\" holds " << version;
    }
    for (const char* const version : row.mDoesNotHold) {
      EXPECT_FALSE(range.IsVersionInRange(Version(version))) << '"' << row.mRange << "\" holds " << version;
    }
  }
}

TEST(VersionRangeTest, BlanksDoNotCount) {
  EXPECT_EQ(VersionRange(std::string("0.0.4.0-0.0.4.+")),
            VersionRange(std::string(" 0.0. 4.0  -  0.0.4.+ ")));
}

TEST(VersionRangeTest, Text) {
  const struct {
    const char* mRange;
    const char* mText;
  } rows[] = {
      {"", ""},
      {"  ", ""},
      {"-", ""},
      {"5", "5.0.0.0"},
      {"10.0.17763.1", "10.0.17763.1"},
      {" 1 - 2.+ ", "1.0.0.0-2.+"},
      {"-6.1.+", "-6.1.+"},
      {"5.0-", "5.0.0.0"},
      {"0.0.0.0", "0.0.0.0"},
      {"+", "+"},
  };
  for (const auto& row : rows) {
    const VersionRange range{std::string(row.mRange)};
    EXPECT_EQ(range.ToString(), row.mText) << row.mRange;
    EXPECT_EQ(VersionRange(range.ToString()), range) << row.mRange;
    EXPECT_EQ(VersionRange(range.ToString()).ToString(), row.mText) << row.mRange;
  }
}

TEST(VersionRangeTest, MadeOfVersions) {
  const VersionRange interval(Version("1.2"), Version("3"));
  EXPECT_EQ(interval.GetMinVersion(), Version("1.2"));
  EXPECT_EQ(interval.GetMaxVersion(), Version("3"));
  EXPECT_EQ(interval, VersionRange(std::string("1.2-3")));

  const VersionRange exact(Version("1.2"));
  EXPECT_FALSE(exact.GetMaxVersion());
  EXPECT_EQ(exact.ToString(), "1.2.0.0");

  const VersionRange every{OSComponentVersion(), OSComponentVersion()};
  EXPECT_TRUE(every.IsVersionInRange(Version("7")));
  EXPECT_EQ(every.ToString(), "");

  const VersionRange upTo(OSComponentVersion(), Version("3"));
  EXPECT_EQ(upTo.ToString(), "-3.0.0.0");
}

TEST(VersionRangeTest, EqualityLooksAtBothEnds) {
  EXPECT_EQ(VersionRange(std::string("1-2")), VersionRange(std::string("1.0-2.0.0.0")));
  EXPECT_FALSE(VersionRange(std::string("1-2")) == VersionRange(std::string("1-3")));
  EXPECT_FALSE(VersionRange(std::string("1-2")) == VersionRange(std::string("0-2")));
  EXPECT_FALSE(VersionRange(std::string("1")) == VersionRange(std::string("1-1")));
}

}  // namespace
