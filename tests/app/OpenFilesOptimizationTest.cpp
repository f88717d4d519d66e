// The one real optimization.
#include "app/OpenFilesOptimization.h"

#include <gtest/gtest.h>

#include "host/qelcore/HostSetup.h"

namespace {

using app::OpenFilesOptimization;
using qelcore::host::GetOpenFileLimits;
using qelcore::host::SetOpenFileLimit;
using Status = qelsystemcompatibilityreport::AppOptimizationStatus;

TEST(OpenFilesOptimization, FromWhatWasThereToTheLargestAndBack) {
  const std::uint64_t largest = GetOpenFileLimits().mLargest;
  ASSERT_GT(largest, 128U);
  SetOpenFileLimit(128);
  OpenFilesOptimization optimization;
  std::string current;
  std::string optimal;
  EXPECT_EQ(optimization.Determine(current, optimal), Status::OptimizationDone);
  EXPECT_EQ(current, "128");
  EXPECT_EQ(optimal, std::to_string(largest));
  EXPECT_EQ(optimization.Accept(), Status::OptimizationDone);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, largest);
  EXPECT_EQ(optimization.Determine(current, optimal), Status::OptimizationNotNeeded);
  EXPECT_EQ(optimization.Default(), Status::OptimizationDone);
  EXPECT_EQ(GetOpenFileLimits().mCurrent, 128U);
  EXPECT_EQ(optimization.Cancel(), Status::OptimizationDone);
}

}  // namespace
