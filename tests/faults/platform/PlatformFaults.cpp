#include "tests/faults/platform/PlatformFaults.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

extern "C" {
// Written by write-platform-calls.
extern const char* const gPlatformCallNames[];
extern const std::uint64_t gPlatformCallCount;
void* DecidePlatformCall(std::uint32_t index, std::uintptr_t place);
}

namespace testsupport {

namespace {

/// Where a loaded library stands in memory.
struct Range {
  std::uintptr_t mBegin = 0;
  std::uintptr_t mEnd = 0;

  [[nodiscard]] bool Holds(std::uintptr_t place) const { return place >= mBegin && place < mEnd; }
};

/// The library under test.
Range FindLibrary() {
  Range range{.mBegin = reinterpret_cast<std::uintptr_t>(&qelsystemcompatibilityreport::EnableReports)};
  dl_iterate_phdr(
      [](dl_phdr_info* library, std::size_t, void* data) {
        Range& found = *static_cast<Range*>(data);
        for (int index = 0; index < library->dlpi_phnum; ++index) {
          const ElfW(Phdr)& part = library->dlpi_phdr[index];
          const Range loaded{.mBegin = library->dlpi_addr + part.p_vaddr,
                             .mEnd = library->dlpi_addr + part.p_vaddr + part.p_memsz};
          if (part.p_type == PT_LOAD && loaded.Holds(found.mBegin)) {
            found = loaded;
            return 1;
          }
        }
        return 0;
      },
      &range);
  return range;
}

std::string ReadableName(const char* symbol) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol, nullptr, nullptr, &status), &std::free);
  return status == 0 ? name.get() : symbol;
}

constexpr std::string_view kLogFunction = "qelcore::LogException(";

enum class Mode { kLetThrough, kRecord, kThrow };

// Plain values alone: the platform is called before the constructors of this program have run.
std::atomic<Mode> gMode{Mode::kLetThrough};
std::array<std::atomic<void*>, 1024> gTargets{};
std::array<std::atomic<void*>, 1024> gAnswers{};
std::atomic<bool> gHasAnswers{false};
std::atomic<std::uintptr_t> gPlaceToThrowAt{0};
std::atomic<std::uint64_t> gTimesLeft{0};
std::atomic<bool> gHasThrown{false};
std::atomic<Log> gLog{Log::kWorks};

struct Records {
  std::mutex mMutex;
  std::map<std::uintptr_t, std::size_t> mIndexes;
  std::vector<PlatformCall> mCalls;

  static Records& Instance() {
    static Records instance;
    return instance;
  }

  void Add(std::uintptr_t place, std::uint32_t index) {
    const std::lock_guard lock(mMutex);
    const auto [found, isNew] = mIndexes.try_emplace(place, mCalls.size());
    if (isNew) mCalls.push_back({.mPlace = place, .mFunction = ReadableName(gPlatformCallNames[index])});
    ++mCalls[found->second].mTimes;
  }
};

bool IsFromTheLibrary(std::uintptr_t place) {
  static const Range library = FindLibrary();
  return library.Holds(place);
}

/// The platform's own function.
void* TargetOf(std::uint32_t index) {
  void* target = gTargets.at(index).load();
  if (target != nullptr) return target;
  target = dlsym(RTLD_NEXT, gPlatformCallNames[index]);
  if (target == nullptr) {
    std::fprintf(stderr, "no library has %s\n", gPlatformCallNames[index]);
    std::abort();
  }
  gTargets.at(index) = target;
  return target;
}

void ThrowIfItIsTime(std::uintptr_t place, std::uint32_t index) {
  if (gHasThrown && gLog == Log::kThrowsToo &&
      ReadableName(gPlatformCallNames[index]).starts_with(kLogFunction))
    throw std::runtime_error("the log is full");
  if ((gPlaceToThrowAt != kAnyCall.mPlace && place != gPlaceToThrowAt) || gTimesLeft == 0 || --gTimesLeft > 0)
    return;
  gHasThrown = true;
  throw std::runtime_error(std::string(kPlatformFault) + ": " + gPlatformCallNames[index]);
}

}  // namespace

void RecordPlatformCalls() {
  Records& records = Records::Instance();
  records.mIndexes.clear();
  records.mCalls.clear();
  gMode = Mode::kRecord;
}

std::vector<PlatformCall> RecordedPlatformCalls() {
  gMode = Mode::kLetThrough;
  Records& records = Records::Instance();
  const std::lock_guard lock(records.mMutex);
  return records.mCalls;
}

void ThrowAt(const PlatformCall& call, std::uint64_t time, Log log) {
  gLog = log;
  gPlaceToThrowAt = call.mPlace;
  gTimesLeft = time;
  gHasThrown = false;
  gMode = Mode::kThrow;
}

bool StopThrowing() {
  gMode = Mode::kLetThrough;
  return gHasThrown;
}

void ReplacePlatformCall(std::string_view name, void* replacement) {
  for (std::uint32_t index = 0; index < gPlatformCallCount; ++index) {
    if (ReadableName(gPlatformCallNames[index]).find(name) != std::string::npos)
      gTargets.at(index) = replacement;
  }
}

void AnswerPlatformCall(std::string_view name, void* answer) {
  for (std::uint32_t index = 0; index < gPlatformCallCount; ++index) {
    if (ReadableName(gPlatformCallNames[index]).find(name) != std::string::npos) gAnswers.at(index) = answer;
  }
  gHasAnswers = answer != nullptr;
}

}  // namespace testsupport

void* DecidePlatformCall(std::uint32_t index, std::uintptr_t place) {
  using namespace testsupport;
  const Mode mode = gMode;
  if (mode != Mode::kLetThrough && IsFromTheLibrary(place)) {
    if (mode == Mode::kRecord)
      Records::Instance().Add(place, index);
    else
      ThrowIfItIsTime(place, index);
  }
  if (gHasAnswers && IsFromTheLibrary(place)) {
    if (void* const answer = gAnswers.at(index).load()) return answer;
  }
  return TargetOf(index);
}
