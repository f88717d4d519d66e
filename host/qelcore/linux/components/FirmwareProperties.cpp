// Properties of the machine as its firmware describes it: maker, model, firmware version, secure boot.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/qelcore/components/Firmware.h"
#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {
namespace {

/// Only these entries of the firmware's table are read. Others hold serial numbers and asset tags.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kTableEntries{
    {{"bios.version", "bios_version"},
     {"bios.vendor", "bios_vendor"},
     {"system.manufacturer", "sys_vendor"},
     {"system.model", "product_name"}}};

/// The variable holds four bytes of attributes and one of value.
std::string_view SecureBoot(const RootedFiles& files) {
  const std::optional<std::string> variable =
      files.Read("sys/firmware/efi/efivars/SecureBoot-8be4df61-93ca-11d2-aa0d-00e098032b8c");
  constexpr std::size_t kLength = 5;
  if (!variable || variable->size() != kLength) return "unavailable";
  return variable->back() == 1 ? "enabled" : "disabled";
}

}  // namespace

void AddFirmwareProperties(const RootedFiles& files, Properties& properties) {
  const std::string table = "sys/class/dmi/id/";
  for (const auto& [name, entry] : kTableEntries) {
    AddProperty(properties, name, files.ReadLine(table + std::string(entry)));
  }
  AddProperty(properties, "bios.date", IsoDateOfFirmware(files.ReadLine(table + "bios_date")));
  const auto chassis = ParseDecimal(files.ReadLine(table + "chassis_type"));
  AddProperty(properties, "system.chassis", chassis ? ChassisKind(*chassis) : std::string_view());
  // Boards without such a table describe themselves in the device tree.
  if (!properties.contains("system.model")) {
    AddProperty(properties, "system.model",
                files.Read("sys/firmware/devicetree/base/model").value_or(std::string()));
  }
  AddProperty(properties, "system.secure_boot", SecureBoot(files));
  AddProperty(properties, "system.virtualisation", ReadVirtualisation(files));
}

}  // namespace qelcore::host::components
