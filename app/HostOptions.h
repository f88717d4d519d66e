// The options that every verb takes, and the host that they set up.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace app {

class HostOptions {
 public:
  /// Adds the options to the command line.
  void AddTo(CLI::App& application);

  /// Sets the reference host up as the options say and starts the process. Throws `UserError`.
  void SetUpHost() const;

 private:
  std::optional<std::string> mPreferencesDirectory;
  std::optional<std::string> mApplicationDirectory;
  std::optional<std::string> mLanguage;
  int mTraceLevel = -1;
  std::vector<std::string> mSettings;
};

}  // namespace app
