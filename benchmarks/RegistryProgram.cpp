// Reads the components and properties of the machine that it runs on, again and again, and prints the
// milliseconds that each reading took.
//
//   registry TIMES
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>

#include "host/qelcore/HostSetup.h"

int main(int count, char** texts) {
  using Clock = std::chrono::steady_clock;
  try {
    qelcore::utility::OSComponent::EnableSupportProperties(true);
    for (int left = count == 2 ? std::stoi(texts[1]) : 1; left > 0; --left) {
      const auto begin = Clock::now();
      if (!qelcore::host::ReadMachineWithoutKeeping()) return 1;
      std::printf("%.3f\n", std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    return 0;
  } catch (const std::exception&) {
    std::fputs("usage: registry [TIMES]\n", stderr);
    return 2;
  }
}
