// What the programs that are compared have in common: a blocklist file against a machine, to a verdict.
//
// There are three: `literal` does a run word for word as the rules of matching read, `floor` does the least
// that gives the same answer, and `library` is the library.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "benchmarks/Machine.h"

namespace benchmarks {

/// All that a run says.
struct Verdict {
  std::string mMatchID;          ///< the identifier of the blocklist's content and the machine
  std::string mReport;           ///< the text report
  std::size_t mTimesLogged = 0;  ///< how many tests met a malformed expression

  friend bool operator==(const Verdict&, const Verdict&) = default;
};

/// One way to come to a verdict. What it keeps of the machine is prepared once, as a registry is.
class Judge {
 public:
  virtual ~Judge() = default;

  /// Reads the blocklist file, matches, sorts and reports.
  [[nodiscard]] virtual Verdict JudgeMachine(const std::string& blocklistPath) = 0;

  /// Whether a match that gave `matchID` still holds: reads the blocklist file, and compares identifiers.
  [[nodiscard]] virtual bool IsUnchanged(const std::string& blocklistPath, const std::string& matchID) = 0;
};

/// One at a time in a process, since a machine's recorded files stand for the file system.
[[nodiscard]] std::unique_ptr<Judge> MakeLiteralJudge(const Machine& machine);
[[nodiscard]] std::unique_ptr<Judge> MakeFloorJudge(const Machine& machine);
[[nodiscard]] std::unique_ptr<Judge> MakeLibraryJudge(const Machine& machine);

}  // namespace benchmarks
