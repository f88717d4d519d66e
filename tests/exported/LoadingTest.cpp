// Loading the library registers what it offers; unloading it takes back what did not run.
#include <gtest/gtest.h>

#include <string>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Config.h"
#include "platform/qelcore/Threads.h"
#include "tests/support/TestHost.h"

namespace {

void* Load() {
#if defined(_WIN32)
  return LoadLibraryA(QELSCR_LIBRARY);
#else
  return dlopen(QELSCR_LIBRARY, RTLD_NOW | RTLD_LOCAL);
#endif
}

/// Returns whether the system took it.
bool Unload(void* library) {
#if defined(_WIN32)
  return FreeLibrary(static_cast<HMODULE>(library)) != FALSE;
#else
  return dlclose(library) == 0;
#endif
}

bool IsLoaded() {
#if defined(_WIN32)
  return GetModuleHandleA(QELSCR_LIBRARY) != nullptr;
#else
  void* const library = dlopen(QELSCR_LIBRARY, RTLD_LAZY | RTLD_NOLOAD);
  if (library != nullptr) dlclose(library);
  return library != nullptr;
#endif
}

/// Whether what depends on the library's part of the start-up runs, too.
bool StartsWithTheLibrary() {
  bool hasRun = false;
  const qelcore::config::InitializerRegistrar dependent(
      "dependent", [&] { return hasRun = true; },
      {"qelsystemcompatibilityreport::SystemCompatilityReportRegistrar"});
  static_cast<void>(qelcore::host::BeginProcess());
  return hasRun;
}

TEST(LoadingTest, LoadingRegisters) {
  const testsupport::TestHost host;
  EXPECT_TRUE(qelappsupport::host::GetBetaFeatures().empty());
  ASSERT_NE(Load(), nullptr);
  EXPECT_EQ(qelappsupport::host::GetBetaFeatures().size(), 1U);
  EXPECT_TRUE(StartsWithTheLibrary());
  qelcore::host::EndProcess();
}

TEST(LoadingTest, ALibraryThatIsUnloadedBeforeTheStartHasNoPartInIt) {
  const testsupport::TestHost host;
  void* const library = Load();
  ASSERT_NE(library, nullptr);
  EXPECT_TRUE(Unload(library));
  EXPECT_FALSE(IsLoaded());
  EXPECT_FALSE(StartsWithTheLibrary());
  qelcore::host::EndProcess();
}

TEST(LoadingTest, ALibraryThatIsUnloadedAfterTheEndLeavesNothingToRun) {
  const testsupport::TestHost host;
  void* const library = Load();
  ASSERT_NE(library, nullptr);
  EXPECT_TRUE(StartsWithTheLibrary());
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kPostStartup);
  qelcore::host::EndProcess();
  EXPECT_TRUE(Unload(library));
  EXPECT_FALSE(IsLoaded());
  // What it registered for these is gone, so that nothing is called that is not there any more.
  qelcore::host::SetAppState(qelcore::appstatemanager::AppState::kEnded);
  EXPECT_TRUE(qelcore::host::BeginProcess());
}

TEST(LoadingTest, ALibraryThatIsUnloadedLeavesNoTasks) {
  const testsupport::TestHost host;
  void* const library = Load();
  ASSERT_NE(library, nullptr);
  EXPECT_TRUE(StartsWithTheLibrary());
  qelcore::threads::AsyncCallFromMainThread([] { FAIL() << "a task ran after the end"; }, 0);
  qelcore::host::EndProcess();
  EXPECT_TRUE(Unload(library));
  EXPECT_EQ(qelcore::host::RunDueMainThreadTasks(), 0U);
}

}  // namespace
