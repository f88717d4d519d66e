// What file rules found on disk, remembered for the process.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "platform/qelcore/Components.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"

namespace qelsystemcompatibilityreport {

/// What is there under a file rule's path.
struct FileAnswer {
  FileStep::Outcome mOutcome = FileStep::Outcome::kNoPath;
  std::string mExpandedPath;  ///< as the rule has it when its placeholders cannot be expanded
  /// Kind `kFile`, the expanded path as its name, the file's version. Null when nothing is there.
  std::shared_ptr<qelcore::utility::OSComponent> mComponent;
};

/// Answers by the paths of the rules.
using FileAnswers = std::unordered_map<std::string, FileAnswer>;

/// The answer for a file rule's path, as the rule writes it. The disk is asked once for each path in a
/// process, or by a thread that matches separately; the reference holds until the answers are forgotten. Not
/// synchronised: all other matching in a process runs on one thread at a time.
[[nodiscard]] const FileAnswer& FindFile(const std::string& path);

/// Forgets every answer.
void ForgetFileComponents();

}  // namespace qelsystemcompatibilityreport
