// The host of a fuzz target: set up once for the process, and silent.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace fuzz {

class QuietHost {
 public:
  /// The process's host, set up on fresh directories with tracing at the level of detail and the language
  /// "en_US". What is traced goes nowhere.
  static QuietHost& Instance();

  QuietHost(const QuietHost&) = delete;
  QuietHost& operator=(const QuietHost&) = delete;

  /// The functions that logged an exception since the last call of `TakeExceptions`, in order.
  [[nodiscard]] std::vector<std::string> TakeExceptions();

  /// The directory that holds everything; it goes with the process.
  [[nodiscard]] const std::filesystem::path& Directory() const { return mDirectory; }
  [[nodiscard]] std::filesystem::path Preferences() const { return mDirectory / "preferences"; }
  [[nodiscard]] std::filesystem::path Application() const { return mDirectory / "application"; }

 private:
  QuietHost();
  ~QuietHost();

  std::filesystem::path mDirectory;
  std::vector<std::string> mExceptions;
};

/// Writes a file whole, making it when missing; ends the process when that fails.
void WriteFile(const std::filesystem::path& path, std::string_view content);

/// The content of a file; ends the process when it cannot be read.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& path);

}  // namespace fuzz
