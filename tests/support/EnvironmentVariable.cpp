#include "tests/support/EnvironmentVariable.h"

#include <cstdlib>
#include <utility>

namespace testsupport {

namespace {

void Change(const std::string& name, const std::optional<std::string>& value) {
#if defined(_WIN32)
  // An empty value takes the variable away.
  _putenv_s(name.c_str(), value.value_or("").c_str());
#else
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
#endif
}

}  // namespace

EnvironmentVariable::EnvironmentVariable(std::string name, const std::optional<std::string>& value)
    : mName(std::move(name)) {
  if (const char* const before = std::getenv(mName.c_str())) mValueBefore = before;
  Change(mName, value);
}

EnvironmentVariable::~EnvironmentVariable() {
  Change(mName, mValueBefore);
}

std::string Placeholder(const std::string& name) {
#if defined(_WIN32)
  return "%" + name + "%";
#else
  return "${" + name + "}";
#endif
}

}  // namespace testsupport
