// An environment variable for one test.
#pragma once

#include <optional>
#include <string>

namespace testsupport {

/// Sets a variable of the process's environment, or takes it away, and brings the old state back at the end.
class EnvironmentVariable {
 public:
  /// Without a value the variable is not set.
  EnvironmentVariable(std::string name, const std::optional<std::string>& value);
  ~EnvironmentVariable();
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  std::string mName;
  std::optional<std::string> mValueBefore;
};

/// How a path names an environment variable on this system: "${NAME}" or "%NAME%".
[[nodiscard]] std::string Placeholder(const std::string& name);

}  // namespace testsupport
