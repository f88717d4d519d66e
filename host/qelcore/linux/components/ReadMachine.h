// The machine below a root directory as components.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "host/qelcore/linux/components/Surroundings.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Files.h"

namespace qelcore::host::components {

/// Where properties are kept between runs, and whether the run may take them from there.
struct PropertyKeeping {
  filesupport::Dir mDirectory;
  bool mExplicitRun = false;  ///< read the properties afresh whatever is kept
  std::int64_t mNow = 0;      ///< seconds since 1970
};

/// The components in registry order: operating system, video, audio, network, then properties when
/// `OSComponent::SupportsProperties()`. What cannot be read is left out. Reads below `root` only, starts no
/// process and wakes no device. Without `keeping` the properties are read afresh and not kept; a failure to
/// keep them or to take them is logged and has no other effect.
[[nodiscard]] utility::OSComponentRegistry::Components ReadMachine(
    const std::filesystem::path& root, const Surroundings& surroundings,
    const std::optional<PropertyKeeping>& keeping);

/// The function that failures are logged under.
inline constexpr std::string_view kLogContext = "qelcore::host::ReadThisMachine";

}  // namespace qelcore::host::components
