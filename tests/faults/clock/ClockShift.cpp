// A system clock that is wrong and that jumps: loaded before the C library, it adds to what the program reads
// from the system's clock. The clock that only counts on is left alone, as it is when somebody sets the time.
//
//   CLOCK_SHIFT   "3600": one hour ahead; "0 5:-31536000 9:60": right at first, from the 5th reading on a
//   year behind,
//                 from the 9th on a minute ahead
#include <dlfcn.h>
#include <sys/time.h>
#include <sys/types.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace {

struct Jump {
  long mReading = 1;
  long mSeconds = 0;
};

std::vector<Jump> ReadJumps() {
  std::vector<Jump> jumps;
  const char* text = std::getenv("CLOCK_SHIFT");
  while (text != nullptr && *text != '\0') {
    char* end = nullptr;
    Jump jump{.mReading = 1, .mSeconds = std::strtol(text, &end, 10)};
    if (*end == ':') jump = {.mReading = jump.mSeconds, .mSeconds = std::strtol(end + 1, &end, 10)};
    jumps.push_back(jump);
    text = *end == ' ' ? end + 1 : nullptr;
  }
  return jumps;
}

/// What is to be added to this reading, in seconds.
long ShiftOfThisReading() {
  static const std::vector<Jump> jumps = ReadJumps();
  static std::atomic<long> count{0};
  const long reading = ++count;
  long shift = 0;
  for (const Jump& jump : jumps) {
    if (reading >= jump.mReading) shift = jump.mSeconds;
  }
  return shift;
}

template <typename Function>
Function SystemFunction(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) {
  static const auto original = SystemFunction<int (*)(clockid_t, timespec*)>("clock_gettime");
  const int result = original(clock, time);
  if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
    time->tv_sec += ShiftOfThisReading();
  return result;
}

int gettimeofday(timeval* time, void* zone) {
  static const auto original = SystemFunction<int (*)(timeval*, void*)>("gettimeofday");
  const int result = original(time, zone);
  if (result == 0) time->tv_sec += ShiftOfThisReading();
  return result;
}

time_t time(time_t* place) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (place != nullptr) *place = now.tv_sec;
  return now.tv_sec;
}
}
