#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/qelcore/Components.h"

namespace {

using qelcore::utility::OSComponentVersion;

using Parts = std::array<std::uint32_t, 4>;

constexpr std::uint32_t kAll = 4294967295U;

Parts PartsOf(const OSComponentVersion& version) {
  return {version.mVersionW, version.mVersionX, version.mVersionY, version.mVersionZ};
}

TEST(OSComponentVersion, ReadsVersions) {
  struct Row {
    const char* mText;
    Parts mParts;
    const char* mWritten;
  };
  const Row rows[] = {
      {"10.0.17763.1", {10, 0, 17763, 1}, "10.0.17763.1"},
      {"24.21.14.1195", {24, 21, 14, 1195}, "24.21.14.1195"},
      {"5.2", {5, 2, 0, 0}, "5.2.0.0"},
      {"7", {7, 0, 0, 0}, "7.0.0.0"},
      {"0", {0, 0, 0, 0}, "0.0.0.0"},
      {"007.08", {7, 8, 0, 0}, "7.8.0.0"},
      {"0.0.4.+", {0, 0, 4, kAll}, "0.0.4.+"},
      {"0.0.+", {0, 0, kAll, kAll}, "0.0.+"},
      {"+", {kAll, kAll, kAll, kAll}, "+"},
      {"1.+", {1, kAll, kAll, kAll}, "1.+"},
      {"1.+.2.3", {1, kAll, kAll, kAll}, "1.+"},
      {"1.+anything", {1, kAll, kAll, kAll}, "1.+"},
      {"1.+.x.y.z.v.w", {1, kAll, kAll, kAll}, "1.+"},
      {"4294967295.0.0.0", {kAll, 0, 0, 0}, "4294967295.0.0.0"},
      {"1.2.3.4294967295", {1, 2, 3, kAll}, "1.2.3.+"},
      {"4294967295.4294967295.4294967295.4294967295", {kAll, kAll, kAll, kAll}, "+"},
      {"0.4294967295.0.4294967295", {0, kAll, 0, kAll}, "0.4294967295.0.+"},
  };
  for (const Row& row : rows) {
    const OSComponentVersion version{std::string_view(row.mText)};
    EXPECT_TRUE(version) << row.mText;
    EXPECT_EQ(PartsOf(version), row.mParts) << row.mText;
    EXPECT_EQ(version.ToString(), row.mWritten) << row.mText;
    EXPECT_EQ(OSComponentVersion(version.ToString()), version) << row.mText;
  }
}

TEST(OSComponentVersion, EveryOtherTextGivesTheEmptyVersion) {
  const std::string rows[] = {"",           " ",
                              "1.2.3.4.5",  "1.2.3.4.",
                              "1.",         ".1",
                              "1..2",       "8.1 beta",
                              "beta",       "1.2a",
                              "-1",         "1.-2",
                              " 1",         "1 ",
                              "4294967296", "1.99999999999999999999",
                              "0x1",        "1,2",
                              "1.2.3.4.+",  "1.2.3.4+",
                              "1+",         std::string("1\0", 2),
                              "\xD9\xA1",   "1.2.\n3"};
  for (const std::string& row : rows) {
    const OSComponentVersion version{std::string_view(row)};
    EXPECT_FALSE(version) << row;
    EXPECT_EQ(PartsOf(version), Parts()) << row;
    EXPECT_EQ(version.ToString(), "") << row;
  }
}

TEST(OSComponentVersion, EmptyDiffersFromZeroInItsTruthValueOnly) {
  const OSComponentVersion empty;
  const OSComponentVersion zero(0, 0, 0, 0);
  EXPECT_FALSE(empty);
  EXPECT_TRUE(zero);
  EXPECT_EQ(empty, zero);
  EXPECT_EQ(empty.ToString(), "");
  EXPECT_EQ(zero.ToString(), "0.0.0.0");
}

TEST(OSComponentVersion, ComparesPartByPart) {
  const char* const ascending[] = {"0.0.0.0", "0.0.0.1",      "0.0.1.0",      "0.0.+",
                                   "0.1.0.0", "0.+",          "9.24.30.4800", "9.24.30.+",
                                   "9.25",    "10.0.17763.1", "10.0.17763.2", "+"};
  for (std::size_t left = 0; left < std::size(ascending); ++left) {
    for (std::size_t right = 0; right < std::size(ascending); ++right) {
      const OSComponentVersion a{std::string_view(ascending[left])};
      const OSComponentVersion b{std::string_view(ascending[right])};
      EXPECT_EQ(a == b, left == right) << ascending[left] << ' ' << ascending[right];
      EXPECT_EQ(a <= b, left <= right) << ascending[left] << ' ' << ascending[right];
      EXPECT_EQ(a >= b, left >= right) << ascending[left] << ' ' << ascending[right];
    }
  }
}

TEST(OSComponentVersion, MaskAndModulus) {
  struct Row {
    const char* mVersion;
    const char* mBy;
    const char* mMasked;
    const char* mReduced;
  };
  const Row rows[] = {
      {"9.18.27.4800", "0.0.0.+", "0.0.0.4800", "0.0.0.4800"},
      {"9.18.27.4800", "0.0.+", "0.0.27.4800", "0.0.27.4800"},
      {"9.18.27.4800", "+", "9.18.27.4800", "9.18.27.4800"},
      {"9.18.27.4800", "0.0.0.0", "0.0.0.0", "0.0.0.0"},
      {"26.21.14.3160", "0.0.10.+", "0.0.10.3160", "0.0.4.3160"},
      {"255.255.255.255", "15.240.1.7", "15.240.1.7", "0.15.0.3"},
      {"+", "+", "+", "0.0.0.0"},
  };
  for (const Row& row : rows) {
    const OSComponentVersion version{std::string_view(row.mVersion)};
    const OSComponentVersion by{std::string_view(row.mBy)};
    EXPECT_EQ((version & by).ToString(), row.mMasked) << row.mVersion << " & " << row.mBy;
    EXPECT_EQ((version % by).ToString(), row.mReduced) << row.mVersion << " % " << row.mBy;
  }
}

}  // namespace
