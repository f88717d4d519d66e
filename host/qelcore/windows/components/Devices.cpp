#include "host/qelcore/windows/components/Devices.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>
#include <utility>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::windows {
namespace {

using components::CleanText;
using components::ParseDecimal;
using components::ParseHexadecimal;
using components::Trim;
using utility::OSComponentType;

/// Instance paths and hardware identifiers are the same in any case of letters.
std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
  });
  return text;
}

/// A text of the registry without the reference that may stand before it: "@oem7.inf,%id%;Real name".
std::string WithoutReference(const std::string& text) {
  const std::size_t end = text.starts_with('@') ? text.find(';') : std::string::npos;
  return CleanText(end == std::string::npos ? text : text.substr(end + 1));
}

/// The friendly names of Bluetooth devices are what their owners call them.
bool IsBluetooth(std::string_view instance) {
  return instance.starts_with("BTH");
}

std::string_view UnknownName(OSComponentType type) {
  switch (type) {
    case OSComponentType::kVideo:
      return "Unknown display device";
    case OSComponentType::kAudio:
      return "Unknown audio device";
    default:
      return "Unknown network device";
  }
}

std::string NameOf(const DeviceRecord& record, std::string_view instance, OSComponentType type,
                   const PersonalNames& names) {
  std::string name = IsBluetooth(instance) ? std::string() : WithoutReference(record.mFriendlyName);
  if (name.empty()) name = WithoutReference(record.mDescription);
  return name.empty() ? std::string(UnknownName(type)) : RemovePersonalData(name, names);
}

/// The four hexadecimal digits behind a mark such as "VEN_".
std::optional<std::uint32_t> NumberBehind(std::string_view text, std::string_view mark) {
  constexpr std::size_t kDigits = 4;
  const std::size_t place = text.find(mark);
  if (place == std::string_view::npos) return std::nullopt;
  const std::string_view digits = text.substr(place + mark.size(), kDigits);
  return digits.size() == kDigits ? ParseHexadecimal(digits) : std::nullopt;
}

std::optional<DeviceId> ReadId(const DeviceRecord& record) {
  constexpr std::array<std::array<std::string_view, 3>, 2> kForms{
      {{"PCI\\", "VEN_", "DEV_"}, {"USB\\", "VID_", "PID_"}}};
  for (const std::string& hardwareId : record.mHardwareIds) {
    const std::string text = UpperCase(hardwareId);
    for (const auto& [bus, vendorMark, deviceMark] : kForms) {
      if (!text.starts_with(bus)) continue;
      const auto vendor = NumberBehind(text, vendorMark);
      const auto device = NumberBehind(text, deviceMark);
      if (vendor && device) return DeviceId{*vendor, *device};
    }
  }
  return std::nullopt;
}

std::string TwoDigits(std::uint64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

/// The registry's "6-8-2023" as ISO date; empty for every other form.
std::string IsoDate(std::string_view date) {
  date = Trim(date);
  const std::size_t first = date.find('-');
  const std::size_t second = first == std::string_view::npos ? first : date.find('-', first + 1);
  if (second == std::string_view::npos) return {};
  const auto month = ParseDecimal(date.substr(0, first));
  const auto day = ParseDecimal(date.substr(first + 1, second - first - 1));
  const auto year = ParseDecimal(date.substr(second + 1));
  if (!month || *month < 1 || *month > 12 || !day || *day < 1 || *day > 31) return {};
  if (!year || *year < 1000 || *year > 9999) return {};
  return std::to_string(*year) + '-' + TwoDigits(*month) + '-' + TwoDigits(*day);
}

/// What is placed behind everything whose place is known.
constexpr std::uint32_t kUnknownPlace = 0xFFFFFFFF;

/// A device with what orders it among its kind.
struct Placed {
  int mBus = 0;
  std::uint32_t mBusNumber = kUnknownPlace;
  std::uint32_t mBusAddress = kUnknownPlace;
  std::string mInstance;
  Device mDevice;
};

constexpr int kPciOrder = 0;
constexpr int kUsbOrder = 1;
constexpr int kOtherOrder = 2;

int BusOrder(std::string_view instance) {
  if (instance.starts_with("PCI\\")) return kPciOrder;
  return instance.starts_with("USB\\") ? kUsbOrder : kOtherOrder;
}

Placed Place(const DeviceRecord& record, OSComponentType type, const PersonalNames& names) {
  Placed placed;
  placed.mInstance = UpperCase(record.mInstance);
  placed.mBus = BusOrder(placed.mInstance);
  if (placed.mBus == kPciOrder) {
    placed.mBusNumber = record.mBusNumber.value_or(kUnknownPlace);
    placed.mBusAddress = record.mBusAddress.value_or(kUnknownPlace);
  }
  Device& device = placed.mDevice;
  device.mType = type;
  device.mName = NameOf(record, placed.mInstance, type, names);
  device.mVersion = utility::OSComponentVersion(Trim(record.mDriverVersion));
  device.mId = ReadId(record);
  device.mService = CleanText(record.mService);
  device.mProvider = WithoutReference(record.mProvider);
  device.mDriverDate = IsoDate(record.mDriverDate);
  device.mMemoryBytes = record.mMemoryBytes;
  device.mProblem = record.mProblem;
  return placed;
}

bool StandsBefore(const Placed& left, const Placed& right) {
  const auto placeOf = [](const Placed& placed) {
    return std::tuple(placed.mBus, placed.mBusNumber, placed.mBusAddress);
  };
  return placeOf(left) != placeOf(right) ? placeOf(left) < placeOf(right)
                                         : components::NaturalLess(left.mInstance, right.mInstance);
}

}  // namespace

std::vector<Device> ListDevices(const DeviceSource& source, const PersonalNames& names) {
  constexpr std::array<std::pair<DeviceClass, OSComponentType>, 3> kClasses{
      {{DeviceClass::kDisplay, OSComponentType::kVideo},
       {DeviceClass::kMedia, OSComponentType::kAudio},
       {DeviceClass::kNet, OSComponentType::kNetwork}}};
  std::vector<Device> devices;
  for (const auto& [deviceClass, type] : kClasses) {
    std::vector<Placed> ofClass;
    for (const DeviceRecord& record : source.List(deviceClass)) {
      ofClass.push_back(Place(record, type, names));
    }
    std::stable_sort(ofClass.begin(), ofClass.end(), StandsBefore);
    for (Placed& placed : ofClass) devices.push_back(std::move(placed.mDevice));
  }
  return devices;
}

}  // namespace qelcore::host::windows
