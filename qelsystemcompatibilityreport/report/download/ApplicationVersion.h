// The application's version, as the host's configuration delivers it.
#pragma once

#include <cstdint>

namespace qelsystemcompatibilityreport {

/// Both numbers are -1 until the host delivers them; a host that never does gets directories named "-1.-1",
/// which is accepted.
struct ApplicationVersion {
  std::int32_t mMajor = -1;
  std::int32_t mMinor = -1;
};

[[nodiscard]] ApplicationVersion GetApplicationVersion();

}  // namespace qelsystemcompatibilityreport
