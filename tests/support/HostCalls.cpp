#include "tests/support/HostCalls.h"

#include <utility>

namespace testsupport {

namespace {

std::function<void(std::string_view)>& Hook() {
  static std::function<void(std::string_view)> hook;
  return hook;
}

}  // namespace

void SetHostCallHook(std::function<void(std::string_view)> hook) {
  Hook() = std::move(hook);
}

void OnHostCall(std::string_view function) {
  if (Hook()) Hook()(function);
}

}  // namespace testsupport
