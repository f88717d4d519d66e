// The project of the guide for hosts can be built.
#include <filesystem>

#include "tests/docs/ExampleHostFixture.h"
#include "tests/docs/HostGuideText.h"

namespace {

using testsupport::Blocks;
using testsupport::Join;
using testsupport::kRoot;

using HostGuideBuildTest = testsupport::ExampleHostFixture;

TEST_F(HostGuideBuildTest, AProjectThatBuildsTheReportAlongKnowsItsTargets) {
  std::filesystem::create_directory_symlink(kRoot, mFiles.Path() / "system-compatibility-report");
  std::filesystem::copy(kRoot / "docs/examples/host/Main.cpp", mFiles.Path());
  mFiles.Write("CMakeLists.txt", Join(Blocks("cmake").front()));
  // Only what would be done: building it all once more takes minutes.
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"-S", Path(""), "-B", Path("build"), "-G", "Ninja",
                                 "-DCMAKE_CXX_COMPILER=" QELSCR_CXX_COMPILER},
        {"--build", Path("build"), "--target", "my_application", "--", "-n"}}) {
    const auto result =
        testsupport::RunProgram(QELSCR_CMAKE, arguments, mEnvironment, mFiles.Path(), mFiles.Path());
    ASSERT_EQ(result.mExitCode, 0) << result.mOutput << result.mErrors;
  }
}

}  // namespace
