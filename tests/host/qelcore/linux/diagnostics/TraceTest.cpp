#include "platform/qelcore/Trace.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/qelcore/HostSetup.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

TEST(LinuxTraces, TheStateDirectoryIsMadeForItsOwnerOnly) {
  const testsupport::TemporaryDirectory directory;
  const std::filesystem::path state = directory.Path() / "state";
  qelcore::host::SetDirectories({.mState = state.string()});
  qelcore::host::SetTraceLevel(6);
  qelcore::TraceOutput("Channel", 1, "text");
  struct stat status {};
  ASSERT_EQ(::stat(state.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
}

}  // namespace
