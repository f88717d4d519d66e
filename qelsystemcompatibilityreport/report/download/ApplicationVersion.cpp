#include "qelsystemcompatibilityreport/report/download/ApplicationVersion.h"

#include "platform/qelcore/Config.h"

namespace qelsystemcompatibilityreport {

namespace {

namespace config = qelcore::config;

ApplicationVersion gApplicationVersion;

const config::ProcessBeginEndNotificationRegistrar gRegistrar(
    [](const config::ConfigurationParameters& parameters) {
      if (const auto major = parameters.FindInteger(config::kAppMajorVersion))
        gApplicationVersion.mMajor = *major;
      if (const auto minor = parameters.FindInteger(config::kAppMinorVersion))
        gApplicationVersion.mMinor = *minor;
    });

}  // namespace

ApplicationVersion GetApplicationVersion() {
  return gApplicationVersion;
}

}  // namespace qelsystemcompatibilityreport
