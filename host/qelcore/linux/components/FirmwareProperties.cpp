// Properties of the machine as its firmware describes it: maker, model, firmware version, secure boot.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/qelcore/linux/components/PlainText.h"
#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {
namespace {

/// Only these entries of the firmware's table are read. Others hold serial numbers and asset tags.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kTableEntries{
    {{"bios.version", "bios_version"},
     {"bios.vendor", "bios_vendor"},
     {"system.manufacturer", "sys_vendor"},
     {"system.model", "product_name"}}};

/// The firmware's date, "03/14/2023", as ISO date; empty for every other form.
std::string IsoDate(const std::string& date) {
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

/// The kind of housing, from the number that the firmware's table gives it.
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
  AddProperty(properties, "bios.date", IsoDate(files.ReadLine(table + "bios_date")));
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
