// Properties that must hold for random cases.
//
// The seed is random and is printed on standard error. The environment variable RC_PARAMS brings a run back,
// or makes it longer: RC_PARAMS="seed=123 max_success=100000".
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>

namespace testsupport {

inline constexpr int kRandomCases = 3000;

/// Checks `property` on `kRandomCases` cases, or on as many as RC_PARAMS says; the test fails with the least
/// case that was found.
template <typename Property>
void CheckOnRandomCases(const std::string& name, Property&& property) {
  rc::detail::TestParams params = rc::detail::configuration().testParams;
  const char* const given = std::getenv("RC_PARAMS");
  if (given == nullptr || std::string(given).find("max_success") == std::string::npos) {
    params.maxSuccess = kRandomCases;
  }
  rc::detail::TestMetadata metadata;
  metadata.id = name;
  metadata.description = name;
  const auto result = rc::detail::checkTestable(std::forward<Property>(property), metadata, params);
  if (!result.template is<rc::detail::SuccessResult>()) {
    std::ostringstream text;
    rc::detail::printResultMessage(result, text);
    ADD_FAILURE() << "seed " << params.seed << "\n" << text.str();
  }
}

}  // namespace testsupport
