// The features of the host that switch parts of this library.
#pragma once

#include <string_view>

namespace qelsystemcompatibilityreport {

/// Whether rules can match system properties.
inline constexpr std::string_view kPropertiesFeature = "qelsystemcompatibilityreport.properties";

}  // namespace qelsystemcompatibilityreport
