// The limit on open streams, of the test's own process.
#include <gtest/gtest.h>

#include <system_error>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::host::GetOpenFileLimits;
using qelcore::host::SetOpenFileLimit;

TEST(WindowsOpenFiles, TheLimitGoesUpAndDownAgain) {
  const auto before = GetOpenFileLimits();
  ASSERT_GE(before.mCurrent, 20U);
  ASSERT_GT(before.mLargest, before.mCurrent);
  SetOpenFileLimit(before.mLargest);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, before.mLargest);
  EXPECT_EQ(GetOpenFileLimits().mLargest, before.mLargest);
  SetOpenFileLimit(before.mCurrent);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, before.mCurrent);
}

TEST(WindowsOpenFiles, WhatTheLibraryCannotServeIsRefused) {
  const auto before = GetOpenFileLimits();
  for (const std::uint64_t limit :
       {std::uint64_t{0}, std::uint64_t{2}, before.mLargest + 1, std::uint64_t{1} << 32, ~std::uint64_t{0}}) {
    EXPECT_THROW(SetOpenFileLimit(limit), std::system_error) << limit;
    EXPECT_EQ(GetOpenFileLimits().mCurrent, before.mCurrent) << limit;
  }
}

}  // namespace
