// What the library is asked for while its host fails: each function that it exports, and the callbacks that
// it leaves with the platform, on a machine with an application that has just started.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TestHost.h"

namespace testsupport {

/// A machine with an application that has just started, for one call.
class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  [[nodiscard]] std::u16string PathOf(const char* name) const;

  /// What the file holds; "-" when it is not there.
  [[nodiscard]] std::string FileText(const char* name) const;

  /// Lets a second pass and does what the main thread has to do.
  void PassTime();

  TestHost mHost;
  RecordingUserInterface mToolkit;
  std::string mVisited;
  std::string mResult;    ///< what the call returned
  std::string mHandedOn;  ///< the platform's fault, when a function that may throw let it through

 private:
  std::uint64_t mMilliseconds = 0;
};

struct Scenario {
  friend void PrintTo(const Scenario& scenario, std::ostream* stream) { *stream << scenario.mName; }

  const char* mName = nullptr;
  /// The exported functions that it calls, without the library's namespace, separated by blanks.
  const char* mFunctions = nullptr;
  /// Those within the library that the log knows by names of their own.
  std::array<const char*, 6> mWithin{};
  void (*mCall)(World& world) = nullptr;
  /// What is there after the call, in words that do not differ from run to run.
  std::string (*mOutcome)(World& world) = nullptr;
  /// What prepares it.
  void (*mPrepare)(World& world) = [](World&) {};
};

/// The functions that it calls, and all names under which what goes wrong in it is logged; whole.
[[nodiscard]] std::vector<std::string> CalledFunctions(const Scenario& scenario);
[[nodiscard]] std::vector<std::string> LoggedNames(const Scenario& scenario);

[[nodiscard]] const std::vector<Scenario>& Scenarios();

/// Takes the network's place, which answers at once, and registers an optimization. Once in a process.
void PreparePlatform();

}  // namespace testsupport
