// The program round a judge.
//
//   literal verdict BLOCKLIST SNAPSHOT [TIMES]     prints the verdict, or the least time of so many runs
//   literal unchanged BLOCKLIST SNAPSHOT [TIMES]   does the run that finds nothing changed
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "benchmarks/Judge.h"

/// What is measured; a name of its own, so that a tool that counts instructions can count these alone.
extern "C" __attribute__((noinline)) void RunMeasured(benchmarks::Judge& judge, const std::string& blocklist,
                                                      const std::string* matchID, std::size_t& total) {
  if (matchID != nullptr) {
    total += judge.IsUnchanged(blocklist, *matchID) ? 1 : 0;
  } else {
    total += judge.JudgeMachine(blocklist).mReport.size();
  }
}

namespace {

double RunOnce(benchmarks::Judge& judge, const std::string& blocklist, const std::string* matchID,
               std::size_t& total) {
  const auto begin = std::chrono::steady_clock::now();
  RunMeasured(judge, blocklist, matchID, total);
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

int Run(const std::vector<std::string>& arguments) {
  const bool onlyWhetherChanged = arguments.at(0) == "unchanged";
  const std::string& blocklist = arguments.at(1);
  const auto judge = benchmarks::QELSCR_MAKE_JUDGE(benchmarks::ReadMachine(arguments.at(2)));
  const benchmarks::Verdict verdict = judge->JudgeMachine(blocklist);
  if (arguments.size() < 4) {
    std::printf("%s\n%zu logged\n%s", verdict.mMatchID.c_str(), verdict.mTimesLogged,
                verdict.mReport.c_str());
    // The first question of a process may be answered apart from all others.
    static_cast<void>(judge->IsUnchanged(blocklist, verdict.mMatchID));
    const bool holds = judge->IsUnchanged(blocklist, verdict.mMatchID) &&
                       !judge->IsUnchanged(blocklist, "ffffffff-ffff-ffff-ffff-ffffffffffff");
    std::printf("%s\n", holds ? "unchanged" : "the identifiers do not tell changed from unchanged");
    return holds ? 0 : 1;
  }
  const std::string* const matchID = onlyWhetherChanged ? &verdict.mMatchID : nullptr;
  if (onlyWhetherChanged) static_cast<void>(judge->IsUnchanged(blocklist, verdict.mMatchID));
  std::size_t total = 0;
  double least = RunOnce(*judge, blocklist, matchID, total);
  for (int left = std::stoi(arguments[3]); left > 1; --left) {
    least = std::min(least, RunOnce(*judge, blocklist, matchID, total));
  }
  std::printf("%.3f\n", least);
  return total > 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** texts) {
  try {
    return Run({texts + 1, texts + count});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "usage: verdict|unchanged BLOCKLIST SNAPSHOT [TIMES] (%s)\n", error.what());
    return 2;
  }
}
