// What a Windows machine says about itself, apart from its devices.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/qelcore/components/Firmware.h"
#include "platform/qelcore/Components.h"

namespace qelcore::host::windows {

/// What the processor says about who runs the system.
struct HypervisorFacts {
  bool mIsPresent = false;
  std::string mName;              ///< "KVMKVMKVM", "Microsoft Hv"
  bool mIsRootPartition = false;  ///< the system controls the hypervisor: the machine is a real one
};

/// Texts are UTF-8, and empty when they cannot be read; numbers are then missing.
struct SystemFacts {
  utility::OSComponentVersion mVersion;  ///< major, minor, build, update revision
  std::string mProductName;              ///< "Windows 10 Pro", which Windows 11 calls itself too
  std::string mDisplayVersion;           ///< "22H2"
  std::string mArchitecture;             ///< "x86_64", "aarch64"
  std::string mLanguage;                 ///< "de_DE"

  components::FirmwareNames mFirmware;
  std::string mFirmwareVersion;
  std::string mFirmwareDate;  ///< "03/14/2023"
  std::optional<std::uint8_t> mChassis;
  std::optional<bool> mIsSecureBootEnabled;

  HypervisorFacts mHypervisor;
  bool mIsContainer = false;

  std::string mProcessorName;
  std::optional<std::uint64_t> mCores;
  std::optional<std::uint64_t> mLogicalProcessors;
  std::optional<std::uint64_t> mMemoryBytes;
  std::optional<std::uint64_t> mPageFileBytes;

  std::optional<std::uint32_t> mDotsPerInch;
  std::optional<std::uint32_t> mMonitors;
  std::optional<bool> mIsRemoteSession;

  /// Free for the user on the disk of the preferences directory; not among what `ReadSystemFacts` reads.
  std::optional<std::uint64_t> mFreeBytes;
};

/// The facts of the running machine.
[[nodiscard]] SystemFacts ReadSystemFacts();

}  // namespace qelcore::host::windows
