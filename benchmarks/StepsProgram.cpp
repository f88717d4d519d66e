// The steps of a run, measured by Google Benchmark; its options are those of every such program.
//
//   steps --benchmark_format=json               all steps on lists and machines of all sizes
//   steps once RULES COMPONENTS                 each step once, for tools that count instructions; prints
//   their
//                                               names in the order of their turns
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <string>

#include "benchmarks/LoggedExceptions.h"
#include "benchmarks/Steps.h"

namespace {

std::atomic<std::size_t> allocations{0};

}  // namespace

// Everything that the process allocates by these is counted.
void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

/// What is measured; a name of its own, so that a tool that counts instructions can count these alone.
extern "C" __attribute__((noinline)) std::size_t RunMeasured(const benchmarks::Step& step,
                                                             benchmarks::StepData& data) {
  return step.mRun(data);
}

namespace {

/// A line of /proc/self/status, in bytes.
double MemoryOf(const char* name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::strtod(line.c_str() + std::strlen(name) + 1, nullptr) * 1024;
  }
  return 0;
}

/// How far the process's memory rises above what it has before, with nothing kept back to be used again.
double PeakOf(const benchmarks::Step& step, benchmarks::StepData& data) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;
  const double before = MemoryOf("VmRSS");
  benchmark::DoNotOptimize(step.mRun(data));
  return MemoryOf("VmHWM") - before;
}

/// The data of the sizes that were asked for last; they are long in the making.
benchmarks::StepData& DataOf(std::size_t rules, std::size_t components) {
  static std::unique_ptr<benchmarks::StepData> data;
  static std::pair<std::size_t, std::size_t> sizes;
  if (!data || sizes != std::pair(rules, components)) {
    data.reset();
    data = std::make_unique<benchmarks::StepData>(rules, components);
    sizes = {rules, components};
  }
  return *data;
}

void Measure(benchmark::State& state, const benchmarks::Step& step, std::size_t rules,
             std::size_t components) {
  benchmarks::StepData& data = DataOf(rules, components);
  const double peak = PeakOf(step, data);
  const std::size_t before = allocations;
  benchmark::DoNotOptimize(RunMeasured(step, data));
  const std::size_t allocated = allocations - before;
  for ([[maybe_unused]] const auto& time : state) benchmark::DoNotOptimize(RunMeasured(step, data));
  state.counters["rules"] = static_cast<double>(rules);
  state.counters["components"] = static_cast<double>(components);
  state.counters["bytes"] = static_cast<double>(data.mText.size());
  state.counters["peak"] = peak;
  state.counters["allocations"] = static_cast<double>(allocated);
}

/// What does not look at the machine is measured with the smallest one only.
bool IsMeasured(const benchmarks::Step& step, std::size_t components) {
  return step.mDependsOnComponents || components == 30;
}

void RegisterAll() {
  for (const std::size_t rules : {100, 1'000, 10'000, 100'000}) {
    for (const std::size_t components : {30, 300, 3'000}) {
      // Seven million issues would take more memory than most machines have.
      if (rules * components > 30'000'000) continue;
      for (const benchmarks::Step& step : benchmarks::AllSteps()) {
        if (!IsMeasured(step, components)) continue;
        const std::string name =
            std::string(step.mName) + '/' + std::to_string(rules) + '/' + std::to_string(components);
        benchmark::RegisterBenchmark(name.c_str(), [&step, rules, components](benchmark::State& state) {
          Measure(state, step, rules, components);
        })->Unit(benchmark::kMillisecond);
      }
    }
  }
}

void RunEachOnce(std::size_t rules, std::size_t components) {
  benchmarks::StepData data(rules, components);
  for (const benchmarks::Step& step : benchmarks::AllSteps()) {
    if (!IsMeasured(step, components)) continue;
    // The next step shall not do the work of giving back what the last one left.
    malloc_trim(0);
    benchmark::DoNotOptimize(RunMeasured(step, data));
    std::puts(step.mName);
  }
}

}  // namespace

int main(int count, char** texts) {
  // The lists hold no malformed expressions, but a large list uses up the time for expressions.
  const benchmarks::LoggedExceptions logged;
  if (count == 4 && std::string(texts[1]) == "once") {
    RunEachOnce(std::stoul(texts[2]), std::stoul(texts[3]));
    return 0;
  }
  RegisterAll();
  benchmark::Initialize(&count, texts);
  if (benchmark::ReportUnrecognizedArguments(count, texts)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
