#include "host/qelcore/components/Firmware.h"

#include <array>
#include <cstddef>
#include <utility>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::components {

std::string_view VirtualMachineKind(const FirmwareNames& names) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 10> kBeginnings{
      {{"KVM", "kvm"},
       {"QEMU", "qemu"},
       {"VMware", "vmware"},
       {"VMW", "vmware"},
       {"VirtualBox", "virtualbox"},
       {"innotek GmbH", "virtualbox"},
       {"Xen", "xen"},
       {"Bochs", "bochs"},
       {"Parallels", "parallels"},
       {"BHYVE", "bhyve"}}};
  for (const std::string* const name :
       {&names.mManufacturer, &names.mModel, &names.mBoardManufacturer, &names.mFirmwareVendor}) {
    for (const auto& [beginning, kind] : kBeginnings) {
      if (name->starts_with(beginning)) return kind;
    }
  }
  // The same maker's real machines have other model names.
  const bool isHyperV = names.mManufacturer == "Microsoft Corporation" && names.mModel == "Virtual Machine";
  return isHyperV ? "hyperv" : std::string_view();
}

std::string IsoDateOfFirmware(const std::string& date) {
  constexpr std::size_t kLength = 10;
  if (date.size() != kLength || date[2] != '/' || date[5] != '/') return {};
  const std::string year = date.substr(6);
  const std::string month = date.substr(0, 2);
  const std::string day = date.substr(3, 2);
  const auto monthNumber = ParseDecimal(month);
  const auto dayNumber = ParseDecimal(day);
  if (!ParseDecimal(year) || !monthNumber || !dayNumber) return {};
  if (*monthNumber < 1 || *monthNumber > 12 || *dayNumber < 1 || *dayNumber > 31) return {};
  return year + "-" + month + "-" + day;
}

std::string_view ChassisKind(std::uint64_t number) {
  switch (number) {
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
    case 13:
    case 15:
    case 16:
    case 35:
    case 36:
      return "desktop";
    case 8:
    case 9:
    case 10:
    case 14:
      return "laptop";
    case 30:
      return "tablet";
    case 31:
    case 32:
      return "convertible";
    case 17:
    case 23:
    case 28:
    case 29:
      return "server";
    default:
      return {};
  }
}

}  // namespace qelcore::host::components
