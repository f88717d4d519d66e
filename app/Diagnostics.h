// What the libraries had to say while a verb worked.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>
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

  struct Problem {
    std::string mContext;  ///< the qualified name of the function that logged it
    std::string mText;     ///< what went wrong
  };

  /// The distinct things that went wrong, in the order in which they did first.
  [[nodiscard]] const std::vector<Problem>& Problems() const { return mProblems; }

  /// Their texts, the first one first, joined to one line; empty when nothing went wrong.
  [[nodiscard]] std::string Summary() const;

  /// Whether this function logged something.
  [[nodiscard]] bool HasProblemIn(std::string_view context) const;

  /// Whether the report service said that a run failed.
  [[nodiscard]] bool RunFailed() const { return mRunFailed; }

  /// Why a run failed, as far as anybody said.
  [[nodiscard]] std::string DescribeFailedRun() const;

  /// Whether a run at launch was skipped because there is no blocklist.
  [[nodiscard]] bool RunWasSkipped() const { return mRunWasSkipped; }

  /// Prints the problems, at most ten, each as a line "scr: warning: ...".
  void PrintProblems() const;

 private:
  void Add(std::string_view context, const std::string& text);

  std::set<std::pair<std::string, std::string>> mKnown;
  std::vector<Problem> mProblems;
  bool mRunFailed = false;
  bool mRunWasSkipped = false;
};

}  // namespace app
