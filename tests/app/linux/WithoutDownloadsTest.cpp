// What serves requests is loaded by the first of them: a program that makes none does without, and one that
// makes some is told why it cannot.
#include <filesystem>

#include "tests/app/ScrTest.h"
#include "tests/support/EnvironmentVariable.h"

namespace {

class WithoutDownloadsTest : public testsupport::ScrTest {
 protected:
  WithoutDownloadsTest() {
    const std::string name = "libqelnet.so.1";
    std::filesystem::create_symlink(std::filesystem::path(QELSCR_SCR).parent_path() / name,
                                    mFiles.Path() / name);
  }

  /// Found before the library that has the other one beside it.
  testsupport::EnvironmentVariable mLibraries{"LD_LIBRARY_PATH", mFiles.Path().string()};
};

TEST_F(WithoutDownloadsTest, OtherVerbsWork) {
  EXPECT_EQ(Scr({"state", "show"}).mExitCode, 0);
}

TEST_F(WithoutDownloadsTest, ARefreshSaysWhy) {
  const auto result = Scr({"refresh", "--base", "http://127.0.0.1:9/", "--now"});
  ExpectError(result, ": nothing can be downloaded: ");
  EXPECT_NE(result.mErrors.find("libqelnet_requests.so"), std::string::npos) << result.mErrors;
}

}  // namespace
