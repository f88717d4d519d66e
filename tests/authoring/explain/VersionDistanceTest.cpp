// How far versions are from ranges.
#include "authoring/explain/VersionDistance.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using authoring::DistanceTo;
using authoring::VersionDistance;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::VersionRange;

VersionDistance Distance(const char* range, const char* version) {
  return DistanceTo(VersionRange(std::string(range)), OSComponentVersion(version));
}

TEST(VersionDistanceTest, TellsTheSideTheNumberAndTheDifference) {
  const struct {
    const char* mRange;
    const char* mVersion;
    const char* mText;
  } rows[] = {
      {"1.0-2.0", "1.5", "within"},
      {"1.0-2.0", "1.0", "within"},
      {"1.0-2.0", "2.0", "within"},
      {"1.0-2.0", "2.0.0.1", "1 above its end in the fourth number"},
      {"1.0-2.0", "0.9", "1 below its beginning in the first number"},
      {"0.0.5.3623-0.0.5.4000", "0.0.5.4601", "601 above its end in the fourth number"},
      {"0.0.5.3623-0.0.5.4000", "0.0.1.9999", "4 below its beginning in the third number"},
      {"5.2", "5.2", "within"},
      {"5.2", "5.2.0.7", "7 above its end in the fourth number"},
      {"5.2", "5.1", "1 below its beginning in the second number"},
      {"5.0-", "5.1", "1 above its end in the second number"},
      {"-6.1.+", "0", "within"},
      {"-6.1.+", "6.2", "1 above its end in the second number"},
      {"5.0-+", "4", "1 below its beginning in the first number"},
      {"5.0-+", "4294967295", "within"},
      {"", "9", "within"},
      {"1.0", "", "1 below its beginning in the first number"},
      {"0.0.0.0", "", "within"},
      {"+", "0", "4294967295 below its beginning in the first number"},
      // Reversed, it holds nothing, and has two ends all the same.
      {"9.0-8.0", "7", "2 below its beginning in the first number"},
      {"9.0-8.0", "8.5", "1 below its beginning in the first number"},
      {"9.0-8.0", "9.5", "1 above its end in the first number"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(authoring::Describe(Distance(row.mRange, row.mVersion)), row.mText)
        << row.mRange << " and " << row.mVersion;
  }
}

TEST(VersionDistanceTest, TheLessTheDifferenceTheNearer) {
  // Each is nearer than the one that follows.
  const struct {
    const char* mRange;
    const char* mVersion;
  } rows[] = {{"1-2", "1.5"},
              {"1-2.0.0.1", "2.0.0.2"},
              {"1-2.0.0.1", "2.0.0.9"},
              {"1-2.0.1", "2.0.2"},
              {"1-2.0.1", "2.1"},
              {"1-5.19.+", "6.1"},
              {"1-5.4.+", "6.1"},
              {"1-5.4", "6.4"},
              {"1-5.3.9", "6.4"},
              {"7.4", "6.2"},
              {"1-4", "6"},
              {"1-2", "+"}};
  for (std::size_t left = 0; left < std::size(rows); ++left) {
    for (std::size_t right = 0; right < std::size(rows); ++right) {
      EXPECT_EQ(Distance(rows[left].mRange, rows[left].mVersion) <
                    Distance(rows[right].mRange, rows[right].mVersion),
                left < right)
          << left << " and " << right;
    }
  }
}

}  // namespace
