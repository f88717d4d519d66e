// The console, which the test must be started on.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/SystemHeaders.h"

namespace {

using qelcore::host::Handle;

constexpr UINT kOldPage = 437;
constexpr UINT kUtf8 = 65001;
constexpr const wchar_t* kChildMark = L"QELSCR_CONSOLE_CHILD";

/// Starts this program again, to do nothing but take the console and end; returns its exit code.
DWORD RunChild() {
  ::SetEnvironmentVariableW(kChildMark, L"1");
  std::array<wchar_t, 4 * MAX_PATH> program{};
  ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION information{};
  EXPECT_NE(::CreateProcessW(program.data(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                             &information),
            0);
  ::SetEnvironmentVariableW(kChildMark, nullptr);
  const Handle process(information.hProcess);
  const Handle thread(information.hThread);
  EXPECT_EQ(::WaitForSingleObject(process.Get(), INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
  DWORD code = 0;
  EXPECT_NE(::GetExitCodeProcess(process.Get(), &code), 0);
  return code;
}

TEST(Console, IsATerminal) {
  EXPECT_TRUE(qelcore::host::IsStandardErrorATerminal());
}

TEST(Console, TakesUtf8WhileTheProgramRunsAndIsAsBeforeAfterwards) {
  ASSERT_NE(::SetConsoleOutputCP(kOldPage), 0);
  ASSERT_NE(::SetConsoleCP(kOldPage), 0);
  EXPECT_EQ(RunChild(), 0U);
  EXPECT_EQ(::GetConsoleOutputCP(), kOldPage);
  EXPECT_EQ(::GetConsoleCP(), kOldPage);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::array<wchar_t, 2> mark{};
  if (::GetEnvironmentVariableW(kChildMark, mark.data(), static_cast<DWORD>(mark.size())) != 0) {
    qelcore::host::ReserveStandardStreams();
    return ::GetConsoleOutputCP() == kUtf8 && ::GetConsoleCP() == kUtf8 ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  testing::InitGoogleTest(&argumentCount, arguments);
  return RUN_ALL_TESTS();
}
