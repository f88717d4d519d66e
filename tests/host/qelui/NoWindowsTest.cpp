// A process that cannot have windows is told why and lives on.
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "host/qelui/DesktopWindow.h"
#include "host/qelui/HostSetup.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/TemporaryDirectory.h"

namespace qelui::test {

namespace {

std::string WhyNot() {
  try {
    host::StartToolkit();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "it started";
}

class NoWindowsTest : public testing::Test {
 protected:
  testsupport::EnvironmentVariable mNoWayland{"WAYLAND_DISPLAY", std::nullopt};
};

TEST_F(NoWindowsTest, WithoutADisplayTheReasonIsGiven) {
  const testsupport::EnvironmentVariable noDisplay("DISPLAY", std::nullopt);
  testing::internal::CaptureStderr();
  EXPECT_EQ(WhyNot(), "there is no display to show windows on");
  EXPECT_EQ(NodeManager::Get(), nullptr);
  EXPECT_EQ(WhyNot(), "there is no display to show windows on") << "a second try";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  host::StopToolkit();
}

TEST_F(NoWindowsTest, WithADisplayThatIsNotThereTheReasonIsGiven) {
  for (const char* const display : {":4711", "no-such-display", "", "127.0.0.1:99"}) {
    const testsupport::EnvironmentVariable wrongDisplay("DISPLAY", display);
    EXPECT_EQ(WhyNot(), "there is no display to show windows on") << display;
  }
  EXPECT_EQ(NodeManager::Get(), nullptr);
}

TEST_F(NoWindowsTest, ADesktopWindowNeedsTheToolkit) {
  EXPECT_THROW(static_cast<void>(host::DesktopWindow::Make()), std::runtime_error);
}

TEST_F(NoWindowsTest, StoppingWhatWasNotStartedDoesNothing) {
  host::StopToolkit();
  EXPECT_EQ(NodeManager::Get(), nullptr);
}

TEST_F(NoWindowsTest, TheProgramLivesWithoutTheNativeToolkitsLibrary) {
  const testsupport::TemporaryDirectory scratch;
  const std::filesystem::path program = QELSCR_SAMPLE_PROGRAM;
  const std::filesystem::path library = QELSCR_QELUI;
  // The loader asks for one of the names that the file has.
  const std::string stem = library.filename().string().substr(0, library.filename().string().find('.'));
  for (const auto& entry : std::filesystem::directory_iterator(library.parent_path())) {
    if (entry.path().filename().string().starts_with(stem + "."))
      std::filesystem::copy_file(entry.path(), scratch.Path() / entry.path().filename());
  }
  const testsupport::ProgramResult result = testsupport::RunProgram(
      program, {"list"}, {{"LD_LIBRARY_PATH", scratch.Path().string()}}, scratch.Path(), scratch.Path());
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_EQ(result.mOutput, "");
  EXPECT_NE(result.mErrors.find("there are no windows: "), std::string::npos) << result.mErrors;
  EXPECT_NE(result.mErrors.find("libqelui_native.so"), std::string::npos) << result.mErrors;
}

}  // namespace

}  // namespace qelui::test
