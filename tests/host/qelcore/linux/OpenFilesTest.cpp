// The limit on open files, of the test's own process.
#include <gtest/gtest.h>

#include <system_error>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::host::GetOpenFileLimits;
using qelcore::host::SetOpenFileLimit;

TEST(OpenFiles, TheLimitGoesDownAndUpAgain) {
  const auto before = GetOpenFileLimits();
  ASSERT_GT(before.mCurrent, 64U);
  ASSERT_GE(before.mLargest, before.mCurrent);
  SetOpenFileLimit(64);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, 64U);
  EXPECT_EQ(GetOpenFileLimits().mLargest, before.mLargest);
  SetOpenFileLimit(before.mCurrent);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, before.mCurrent);
}

TEST(OpenFiles, MoreThanTheLargestIsRefused) {
  const auto before = GetOpenFileLimits();
  if (before.mLargest + 1 == 0) GTEST_SKIP() << "there is no largest limit here";
  EXPECT_THROW(SetOpenFileLimit(before.mLargest + 1), std::system_error);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, before.mCurrent);
}

}  // namespace
