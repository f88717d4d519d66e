// Reading the machine starts no process and no thread: it would take longer than everything else, and what
// runs is nobody's business but the user's.
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "host/qelcore/HostSetup.h"

namespace {

/// From now on the system ends this process when it starts another process or a thread.
void ForbidProcesses() {
  std::vector<sock_filter> filter{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const unsigned int call : {
#if defined(SYS_fork)
         SYS_fork, SYS_vfork,
#endif
             SYS_clone, SYS_clone3, SYS_execve, SYS_execveat
       }) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    std::_Exit(EXIT_FAILURE);
  }
}

/// Ends the process without anything that a sanitizer does at its end.
[[noreturn]] void ReadTheMachine() {
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  ForbidProcesses();
  std::_Exit(qelcore::host::ReadMachineWithoutKeeping() ? EXIT_SUCCESS : EXIT_FAILURE);
}

[[noreturn]] void StartAProcess() {
  ForbidProcesses();
  std::_Exit(fork() < 0 ? EXIT_FAILURE : EXIT_SUCCESS);
}

TEST(NoProcessTest, ReadingTheMachineStartsNone) {
  EXPECT_EXIT(ReadTheMachine(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST(NoProcessTest, OneThatWereStartedWouldBeSeen) {
  EXPECT_EXIT(StartAProcess(), testing::KilledBySignal(SIGSYS), "");
}

}  // namespace
