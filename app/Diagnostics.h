// What the libraries had to say while a verb worked.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace app {

/// Collects logged exceptions and traced errors as long as it lives, in addition to the trace log. One at a
/// time.
class Diagnostics {
 public:
  Diagnostics();
  ~Diagnostics();
  Diagnostics(const Diagnostics&) = delete;
  Diagnostics& operator=(const Diagnostics&) = delete;

  /// The distinct things that went wrong, in the order in which they did first. Each is a sentence without
  /// the name of the function that found it.
  [[nodiscard]] const std::vector<std::string>& Problems() const { return mProblems; }

  /// Whether the report service said that a run failed.
  [[nodiscard]] bool RunFailed() const { return mRunFailed; }

  /// Prints the problems, at most ten, each as a line "scr: warning: ...".
  void PrintProblems() const;

 private:
  void Add(const std::string& problem);

  std::set<std::string> mKnown;
  std::vector<std::string> mProblems;
  bool mRunFailed = false;
};

}  // namespace app
