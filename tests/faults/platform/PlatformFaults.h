// Makes the platform throw where the library calls it.
//
// The test program defines every function that the library calls in the platform's libraries, and so stands
// between them: it is asked at each call. A place is the instruction of the library behind the call, so the
// same function has a place for every line that calls it. Calls that the platform makes itself, or the test,
// are let through.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace testsupport {

/// Where the library calls the platform.
struct PlatformCall {
  std::uintptr_t mPlace = 0;
  std::string mFunction;     ///< as its declaration names it
  std::uint64_t mTimes = 0;  ///< how often it was reached
};

/// Notes from now on where the platform is called.
void RecordPlatformCalls();

/// Stands for every place.
inline const PlatformCall kAnyCall;

/// Stops, and returns the places in the order in which they were first reached.
[[nodiscard]] std::vector<PlatformCall> RecordedPlatformCalls();

enum class Log { kWorks, kThrowsToo };

/// The platform throws `kPlatformFault` when this place is reached for the `time`th time, from 1; once. The
/// log of exceptions may throw as well, from then on.
void ThrowAt(const PlatformCall& call, std::uint64_t time, Log log);

/// The platform does its work again. Returns whether it has thrown since `ThrowAt`.
bool StopThrowing();

/// Calls of the platform function whose name contains `name` end in `replacement`, which has its signature.
void ReplacePlatformCall(std::string_view name, void* replacement);

/// Calls of such a function from the library alone end in `answer`, which has its signature; in the
/// platform's own when that is null.
void AnswerPlatformCall(std::string_view name, void* answer);

inline constexpr const char* kPlatformFault = "the platform cannot do it";

}  // namespace testsupport
