#include "host/qelcore/windows/components/SystemFacts.h"

#include <cstddef>
#include <string_view>
#include <vector>

#include "host/qelcore/System.h"
#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/WideText.h"
#include "host/qelcore/windows/components/FirmwareTable.h"
#include "host/qelcore/windows/components/Hypervisor.h"
#include "host/qelcore/windows/components/Registry.h"

// What the system's headers for programs do not declare: it tells the version to whoever asks, while the
// others answer with what a program's manifest says it knows.
extern "C" LONG __stdcall RtlGetVersion(OSVERSIONINFOW* information);

namespace qelcore::host::windows {
namespace {

constexpr const wchar_t* kVersionKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr const wchar_t* kFirmwareKey = L"HARDWARE\\DESCRIPTION\\System\\BIOS";
constexpr const wchar_t* kProcessorKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
constexpr const wchar_t* kControlKey = L"SYSTEM\\CurrentControlSet\\Control";
constexpr const wchar_t* kSecureBootKey = L"SYSTEM\\CurrentControlSet\\Control\\SecureBoot\\State";

utility::OSComponentVersion ReadVersion(const RegistryKey& key) {
  OSVERSIONINFOW information{};
  information.dwOSVersionInfoSize = sizeof information;
  if (::RtlGetVersion(&information) != 0) return {};
  const std::uint64_t revision = key.Number(L"UBR").value_or(0);
  return {information.dwMajorVersion, information.dwMinorVersion, information.dwBuildNumber,
          static_cast<std::uint32_t>(revision)};
}

/// The architecture of the system, also when the program is made for another one.
std::string ReadArchitecture() {
  USHORT process = 0;
  USHORT machine = 0;
  if (::IsWow64Process2(::GetCurrentProcess(), &process, &machine) == 0) return {};
  switch (machine) {
    case IMAGE_FILE_MACHINE_AMD64:
      return "x86_64";
    case IMAGE_FILE_MACHINE_ARM64:
      return "aarch64";
    default:
      return {};
  }
}

/// The number of cores, each with one logical processor or more.
std::optional<std::uint64_t> CountCores() {
  DWORD size = 0;
  ::GetLogicalProcessorInformationEx(RelationProcessorCore, nullptr, &size);
  std::vector<std::byte> buffer(size);
  if (size == 0 ||
      ::GetLogicalProcessorInformationEx(
          RelationProcessorCore, reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data()),
          &size) == 0) {
    return std::nullopt;
  }
  std::uint64_t count = 0;
  for (std::size_t place = 0; place < size; ++count) {
    const auto* const entry =
        reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data() + place);
    if (entry->Size == 0) break;
    place += entry->Size;
  }
  return count;
}

std::optional<std::uint8_t> ReadChassis() {
  constexpr DWORD kProvider = 0x52534D42;  // "RSMB"
  constexpr UINT kLargestTable = UINT{1} << 20;
  const UINT size = ::GetSystemFirmwareTable(kProvider, 0, nullptr, 0);
  if (size == 0 || size > kLargestTable) return std::nullopt;
  std::vector<char> table(size);
  if (::GetSystemFirmwareTable(kProvider, 0, table.data(), size) != size) return std::nullopt;
  return ReadChassisNumber(std::string_view(table.data(), table.size()));
}

void ReadFirmware(SystemFacts& facts) {
  const RegistryKey key(kFirmwareKey);
  facts.mFirmware.mManufacturer = key.Text(L"SystemManufacturer");
  facts.mFirmware.mModel = key.Text(L"SystemProductName");
  facts.mFirmware.mBoardManufacturer = key.Text(L"BaseBoardManufacturer");
  facts.mFirmware.mFirmwareVendor = key.Text(L"BIOSVendor");
  facts.mFirmwareVersion = key.Text(L"BIOSVersion");
  facts.mFirmwareDate = key.Text(L"BIOSReleaseDate");
  facts.mChassis = ReadChassis();
  if (const auto enabled = RegistryKey(kSecureBootKey).Number(L"UEFISecureBootEnabled")) {
    facts.mIsSecureBootEnabled = *enabled != 0;
  }
}

void ReadProcessorAndMemory(SystemFacts& facts) {
  facts.mProcessorName = RegistryKey(kProcessorKey).Text(L"ProcessorNameString");
  facts.mCores = CountCores();
  if (const DWORD count = ::GetActiveProcessorCount(ALL_PROCESSOR_GROUPS); count != 0) {
    facts.mLogicalProcessors = count;
  }
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  if (::GlobalMemoryStatusEx(&memory) != 0) {
    facts.mMemoryBytes = memory.ullTotalPhys;
    // The limit of what can be promised is the memory and the page files together.
    const bool hasPageFile = memory.ullTotalPageFile > memory.ullTotalPhys;
    facts.mPageFileBytes = hasPageFile ? memory.ullTotalPageFile - memory.ullTotalPhys : 0;
  }
}

void ReadSession(SystemFacts& facts) {
  if (const UINT dotsPerInch = ::GetDpiForSystem(); dotsPerInch != 0) facts.mDotsPerInch = dotsPerInch;
  if (const int monitors = ::GetSystemMetrics(SM_CMONITORS); monitors > 0) {
    facts.mMonitors = static_cast<std::uint32_t>(monitors);
  }
  facts.mIsRemoteSession = ::GetSystemMetrics(SM_REMOTESESSION) != 0;
}

}  // namespace

SystemFacts ReadSystemFacts() {
  SystemFacts facts;
  const RegistryKey version(kVersionKey);
  facts.mVersion = ReadVersion(version);
  facts.mProductName = version.Text(L"ProductName");
  facts.mDisplayVersion = version.Text(L"DisplayVersion");
  facts.mArchitecture = ReadArchitecture();
  facts.mLanguage = EnvironmentLanguage();
  ReadFirmware(facts);
  facts.mHypervisor = ReadHypervisor();
  facts.mIsContainer = RegistryKey(kControlKey).Number(L"ContainerType").has_value();
  ReadProcessorAndMemory(facts);
  ReadSession(facts);
  return facts;
}

}  // namespace qelcore::host::windows
