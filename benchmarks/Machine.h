// A recorded machine as plain values, for the programs that judge it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/qelcore/Components.h"

namespace benchmarks {

struct MachineComponent {
  qelcore::utility::OSComponentType mType = qelcore::utility::OSComponentType::kInvalid;
  std::string mName;
  std::string mVersion;
  std::string mValue;
};

struct Machine {
  std::vector<MachineComponent> mComponents;
  std::map<std::string, std::string, std::less<>> mFileVersions;  ///< versions by path
};

/// Reads a snapshot of a machine. Throws when it is none.
[[nodiscard]] Machine ReadMachine(const std::string& path);

/// The registry of the machine's components.
[[nodiscard]] qelcore::utility::OSComponentRegistry MakeRegistry(const Machine& machine);

}  // namespace benchmarks
