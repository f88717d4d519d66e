#include <array>
#include <exception>

#include "platform/qelappsupport.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Trace.h"

namespace qelappsupport {

namespace {

struct Feature {
  std::string_view mName;
  bool mIsOnByDefault = false;
};

/// The features that this host knows; every other one is off until a debug setting switches it on.
constexpr std::array kFeatures = {
    Feature{.mName = "qelsystemcompatibilityreport.properties", .mIsOnByDefault = true}};

bool IsOnByDefault(std::string_view name) {
  for (const Feature& feature : kFeatures) {
    if (feature.mName == name) {
      return feature.mIsOnByDefault;
    }
  }
  return false;
}

}  // namespace

bool IsFeatureEnabled(std::string_view name) {
  try {
    const std::string_view defaultValue = IsOnByDefault(name) ? "true" : "false";
    return qelcore::DebugDatabase::Instance().GetEntry(name, defaultValue) == "true";
  } catch (...) {
    qelcore::LogException(std::current_exception(), "qelappsupport::IsFeatureEnabled");
    return false;
  }
}

}  // namespace qelappsupport
