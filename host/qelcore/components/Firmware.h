// What the firmware's table of a PC says, wherever the system keeps it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qelcore::host::components {

/// The names in the firmware's table that tell a virtual machine.
struct FirmwareNames {
  std::string mManufacturer;  ///< of the machine
  std::string mModel;
  std::string mBoardManufacturer;
  std::string mFirmwareVendor;
};

/// The kind of virtual machine that its maker wrote into the table, such as "vmware" and "hyperv"; empty when
/// the names are of no known one.
[[nodiscard]] std::string_view VirtualMachineKind(const FirmwareNames& names);

/// The table's form of a date, "03/14/2023", as ISO date; empty for every other form.
[[nodiscard]] std::string IsoDateOfFirmware(const std::string& date);

/// "desktop", "laptop", "convertible", "tablet" or "server" for the number that the table gives the housing;
/// empty for every other number.
[[nodiscard]] std::string_view ChassisKind(std::uint64_t number);

}  // namespace qelcore::host::components
