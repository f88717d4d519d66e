// Reads the components and properties of the machine that it runs on, again and again, and prints the
// milliseconds that each reading took, and those of the processor.
//
//   registry TIMES
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <string>

#include "host/qelcore/HostSetup.h"

int main(int count, char** texts) {
  using Clock = std::chrono::steady_clock;
  try {
    qelcore::utility::OSComponent::EnableSupportProperties(true);
    for (int left = count == 2 ? std::stoi(texts[1]) : 1; left > 0; --left) {
      const auto begin = Clock::now();
      const std::clock_t processorBegin = std::clock();
      if (!qelcore::host::ReadMachineWithoutKeeping()) return 1;
      const std::chrono::duration<double, std::milli> wall = Clock::now() - begin;
      const double processor = 1000.0 * static_cast<double>(std::clock() - processorBegin) / CLOCKS_PER_SEC;
      std::printf("%.3f %.3f\n", wall.count(), processor);
    }
    return 0;
  } catch (const std::exception&) {
    std::fputs("usage: registry [TIMES]\n", stderr);
    return 2;
  }
}
