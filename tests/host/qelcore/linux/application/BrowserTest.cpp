#include "platform/qelcore/Browser.h"

#include <gmock/gmock.h>

#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TestHost.h"

namespace {

TEST(LinuxBrowser, ASystemWithoutBrowserIsAFailure) {
  const testsupport::TestHost host;
  const testsupport::EnvironmentVariable path("PATH", host.Files().Path().string());
  EXPECT_FALSE(qelcore::OpenURLInDefaultBrowser(u"https://example.com"));
  EXPECT_THAT(host.mExceptionContexts, testing::ElementsAre("qelcore::OpenURLInDefaultBrowser"));
}

}  // namespace
