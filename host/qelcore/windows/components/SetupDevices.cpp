#include "host/qelcore/windows/components/SetupDevices.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"
#include "host/qelcore/windows/components/Registry.h"
// Need the system's header before them.
#include <cfgmgr32.h>
#include <setupapi.h>

namespace qelcore::host::windows {
namespace {

constexpr DWORD kMostDevices = 4096;

/// The most that is read of a device's text, in characters.
constexpr DWORD kLongestText = 32'768;

constexpr GUID kDisplayClass{0x4D36E968, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
constexpr GUID kMediaClass{0x4D36E96C, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
constexpr GUID kNetClass{0x4D36E972, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

const GUID& IdentifierOf(DeviceClass deviceClass) {
  switch (deviceClass) {
    case DeviceClass::kDisplay:
      return kDisplayClass;
    case DeviceClass::kMedia:
      return kMediaClass;
    case DeviceClass::kNet:
      break;
  }
  return kNetClass;
}

/// The present devices of a class, as a set of the system's.
class DeviceSet {
 public:
  explicit DeviceSet(DeviceClass deviceClass)
      : mSet(::SetupDiGetClassDevsW(&IdentifierOf(deviceClass), nullptr, nullptr, DIGCF_PRESENT)) {}
  ~DeviceSet() {
    if (mSet != INVALID_HANDLE_VALUE) ::SetupDiDestroyDeviceInfoList(mSet);
  }
  DeviceSet(const DeviceSet&) = delete;
  DeviceSet& operator=(const DeviceSet&) = delete;

  [[nodiscard]] HDEVINFO Get() const { return mSet; }

 private:
  HDEVINFO mSet;
};

/// All units of a text property, with the null characters inside it; empty when the device has none.
std::wstring ReadUnits(const DeviceSet& devices, SP_DEVINFO_DATA& device, DWORD property) {
  DWORD type = 0;
  DWORD size = 0;
  std::wstring units(MAX_PATH, L'\0');
  for (;;) {
    if (::SetupDiGetDeviceRegistryPropertyW(devices.Get(), &device, property, &type,
                                            reinterpret_cast<BYTE*>(units.data()),
                                            static_cast<DWORD>(units.size() * sizeof(wchar_t)), &size) != 0) {
      const bool isText = type == REG_SZ || type == REG_MULTI_SZ || type == REG_EXPAND_SZ;
      units.resize(isText ? size / sizeof(wchar_t) : 0);
      return units;
    }
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER || units.size() >= kLongestText) return {};
    units.resize(units.size() * 2);
  }
}

std::string ReadText(const DeviceSet& devices, SP_DEVINFO_DATA& device, DWORD property) {
  return ToNarrow(ReadUnits(devices, device, property).c_str());
}

std::vector<std::string> ReadTexts(const DeviceSet& devices, SP_DEVINFO_DATA& device, DWORD property) {
  const std::wstring units = ReadUnits(devices, device, property);
  std::vector<std::string> texts;
  std::wstring_view rest = units;
  while (!rest.empty() && rest.front() != L'\0') {
    const std::size_t end = rest.find(L'\0');
    texts.push_back(ToNarrow(rest.substr(0, end)));
    rest.remove_prefix(end == std::wstring_view::npos ? rest.size() : end + 1);
  }
  return texts;
}

std::optional<std::uint32_t> ReadNumber(const DeviceSet& devices, SP_DEVINFO_DATA& device, DWORD property) {
  DWORD type = 0;
  DWORD number = 0;
  const bool isRead =
      ::SetupDiGetDeviceRegistryPropertyW(devices.Get(), &device, property, &type,
                                          reinterpret_cast<BYTE*>(&number), sizeof number, nullptr) != 0;
  return isRead && type == REG_DWORD ? std::optional<std::uint32_t>(number) : std::nullopt;
}

std::string ReadInstance(const DeviceSet& devices, SP_DEVINFO_DATA& device) {
  std::array<wchar_t, MAX_DEVICE_ID_LEN + 1> instance{};
  const bool isRead = ::SetupDiGetDeviceInstanceIdW(devices.Get(), &device, instance.data(),
                                                    static_cast<DWORD>(instance.size()), nullptr) != 0;
  return isRead ? ToNarrow(instance.data()) : std::string();
}

std::optional<std::uint32_t> ReadProblem(const SP_DEVINFO_DATA& device) {
  ULONG status = 0;
  ULONG problem = 0;
  if (::CM_Get_DevNode_Status(&status, &problem, device.DevInst, 0) != CR_SUCCESS) return std::nullopt;
  return (status & DN_HAS_PROBLEM) != 0 ? static_cast<std::uint32_t>(problem) : 0U;
}

void ReadDriverKey(const DeviceSet& devices, SP_DEVINFO_DATA& device, DeviceRecord& record) {
  const RegistryKey key = RegistryKey::Adopt(
      ::SetupDiOpenDevRegKey(devices.Get(), &device, DICS_FLAG_GLOBAL, 0, DIREG_DRV, KEY_READ));
  record.mProvider = key.Text(L"ProviderName");
  record.mDriverVersion = key.Text(L"DriverVersion");
  record.mDriverDate = key.Text(L"DriverDate");
  record.mMemoryBytes = key.Number(L"HardwareInformation.qwMemorySize");
  if (!record.mMemoryBytes) record.mMemoryBytes = key.Number(L"HardwareInformation.MemorySize");
}

}  // namespace

std::vector<DeviceRecord> SetupDevices::List(DeviceClass deviceClass) const {
  const DeviceSet devices(deviceClass);
  std::vector<DeviceRecord> records;
  for (DWORD index = 0; index < kMostDevices; ++index) {
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof device;
    if (::SetupDiEnumDeviceInfo(devices.Get(), index, &device) == 0) break;
    DeviceRecord record;
    record.mInstance = ReadInstance(devices, device);
    record.mBusNumber = ReadNumber(devices, device, SPDRP_BUSNUMBER);
    record.mBusAddress = ReadNumber(devices, device, SPDRP_ADDRESS);
    record.mFriendlyName = ReadText(devices, device, SPDRP_FRIENDLYNAME);
    record.mDescription = ReadText(devices, device, SPDRP_DEVICEDESC);
    record.mHardwareIds = ReadTexts(devices, device, SPDRP_HARDWAREID);
    record.mService = ReadText(devices, device, SPDRP_SERVICE);
    ReadDriverKey(devices, device, record);
    record.mProblem = ReadProblem(device);
    records.push_back(std::move(record));
  }
  return records;
}

}  // namespace qelcore::host::windows
