// How far a long run is, on a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace app {

/// One line on standard error that is written over, a few times a second, when somebody reads it on a
/// terminal; else nothing at all. One thread at a time.
class Progress {
 public:
  /// `what` is counted, such as "machines"; `count` is how many there will be, 0 when that is not known.
  Progress(std::string what, std::size_t count);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(std::size_t done);

  /// Takes the line away, before something else is printed.
  void Clear();

 private:
  const std::string mWhat;
  const std::size_t mCount;
  const bool mIsWatched;
  bool mIsShown = false;
  std::chrono::steady_clock::time_point mNext{};
};

}  // namespace app
