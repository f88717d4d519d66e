// The machines of a verb that looks at many: files, directories of them, lists of them, or lines.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace app {

/// Standard input, line by line. Memory is bounded whatever comes: of a line that is too long nothing is
/// kept.
class InputLines {
 public:
  /// Takes standard input over. At most one in a process.
  InputLines();

  /// The next line without its line end; nothing at the end of the input.
  struct Line {
    std::string mText;
    bool mIsTooLong = false;
  };
  [[nodiscard]] std::optional<Line> Next();
};

/// As many bytes as a line may have.
inline constexpr std::size_t kLongestLine = std::size_t{16} << 20U;

/// The files that `--machine` and `--machines-from` name, one after the other.
class MachineFiles {
 public:
  /// A directory stands for the ".json" files in it, in order of names, those of folders in it left out.
  /// `list`, if not empty, is a file with a path on each line, or "-" for standard input. Throws `UserError`
  /// for a directory without such files, for a list that cannot be read, and for one without a path.
  MachineFiles(const std::vector<std::string>& paths, const std::string& list);

  [[nodiscard]] std::optional<std::string> Next();

  /// How many there are in all.
  [[nodiscard]] std::size_t Count() const { return mCount; }

 private:
  void Add(const std::string& path);

  std::deque<std::string> mPaths;
  std::size_t mCount = 0;
};

}  // namespace app
