// The system's setup functions, over devices that a test puts into the registry.
#include "host/qelcore/windows/components/SetupDevices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/qelcore/windows/SystemHeaders.h"
#include "host/qelcore/windows/components/ReadMachine.h"
#include "tests/host/qelcore/components/ComponentLines.h"
#include "tests/host/qelcore/windows/components/OwnRegistry.h"

namespace qelcore::host::windows {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::wstring kEnum = L"System\\CurrentControlSet\\Enum\\";
const std::wstring kClass = L"System\\CurrentControlSet\\Control\\Class\\";
const std::wstring kDisplay = L"{4d36e968-e325-11ce-bfc1-08002be10318}";
const std::wstring kMedia = L"{4d36e96c-e325-11ce-bfc1-08002be10318}";
const std::wstring kNet = L"{4d36e972-e325-11ce-bfc1-08002be10318}";

class SetupDevicesTest : public testing::Test {
 protected:
  void SetUp() override {
    if (::GetProcAddress(::GetModuleHandleW(L"ntdll"), "wine_get_version") == nullptr) {
      GTEST_SKIP() << "Windows keeps its devices to itself";
    }
  }

  void AddDevice(const std::wstring& instance, const std::wstring& deviceClass, const std::wstring& driver) {
    mRegistry.SetText(kEnum + instance, L"ClassGUID", deviceClass);
    if (!driver.empty()) mRegistry.SetText(kEnum + instance, L"Driver", deviceClass + L"\\" + driver);
  }

  void AddGraphicsCard() {
    const std::wstring instance = L"PCI\\VEN_10DE&DEV_2484&SUBSYS_00000000&REV_A1\\4&2283F625&0&0008";
    AddDevice(instance, kDisplay, L"0001");
    mRegistry.SetText(kEnum + instance, L"DeviceDesc", L"NVIDIA GeForce RTX 3070 \u00E9");
    mRegistry.SetTexts(kEnum + instance, L"HardwareID",
                       {L"PCI\\VEN_10DE&DEV_2484&SUBSYS_00000000&REV_A1", L"PCI\\VEN_10DE&DEV_2484"});
    mRegistry.SetText(kEnum + instance, L"Service", L"nvlddmkm");
    const std::wstring key = kClass + kDisplay + L"\\0001";
    mRegistry.SetText(key, L"ProviderName", L"NVIDIA");
    mRegistry.SetText(key, L"DriverVersion", L"31.0.15.3623");
    mRegistry.SetText(key, L"DriverDate", L"6-8-2023");
    mRegistry.SetBytes(key, L"HardwareInformation.qwMemorySize", {0, 0, 0, 0, 2, 0, 0, 0});
  }

  testsupport::OwnRegistry mRegistry;
};

TEST_F(SetupDevicesTest, ADeviceHasWhatTheRegistrySays) {
  AddGraphicsCard();
  const std::vector<DeviceRecord> records = SetupDevices().List(DeviceClass::kDisplay);
  ASSERT_EQ(records.size(), 1U);
  const DeviceRecord& record = records[0];
  EXPECT_EQ(record.mInstance, "PCI\\VEN_10DE&DEV_2484&SUBSYS_00000000&REV_A1\\4&2283F625&0&0008");
  EXPECT_EQ(record.mFriendlyName, "");
  EXPECT_EQ(record.mDescription, "NVIDIA GeForce RTX 3070 \xC3\xA9");
  EXPECT_THAT(record.mHardwareIds,
              ElementsAre("PCI\\VEN_10DE&DEV_2484&SUBSYS_00000000&REV_A1", "PCI\\VEN_10DE&DEV_2484"));
  EXPECT_EQ(record.mService, "nvlddmkm");
  EXPECT_EQ(record.mProvider, "NVIDIA");
  EXPECT_EQ(record.mDriverVersion, "31.0.15.3623");
  EXPECT_EQ(record.mDriverDate, "6-8-2023");
  EXPECT_EQ(record.mMemoryBytes, std::uint64_t{2} << 32);
}

TEST_F(SetupDevicesTest, EachClassHasItsOwnDevices) {
  AddGraphicsCard();
  AddDevice(L"HDAUDIO\\FUNC_01\\1", kMedia, L"");
  AddDevice(L"PCI\\VEN_8086&DEV_0001\\1", kNet, L"");
  AddDevice(L"PCI\\VEN_8086&DEV_0002\\1", kNet, L"");
  AddDevice(L"PCI\\VEN_8086&DEV_0003\\1", L"{4d36e97d-e325-11ce-bfc1-08002be10318}", L"");
  EXPECT_EQ(SetupDevices().List(DeviceClass::kDisplay).size(), 1U);
  EXPECT_EQ(SetupDevices().List(DeviceClass::kMedia).size(), 1U);
  EXPECT_EQ(SetupDevices().List(DeviceClass::kNet).size(), 2U);
}

TEST_F(SetupDevicesTest, AMachineWithoutDevicesHasNone) {
  for (const DeviceClass deviceClass : {DeviceClass::kDisplay, DeviceClass::kMedia, DeviceClass::kNet}) {
    EXPECT_THAT(SetupDevices().List(deviceClass), IsEmpty());
  }
}

TEST_F(SetupDevicesTest, ADeviceWithoutADriverHasNoVersion) {
  AddDevice(L"PCI\\VEN_8086&DEV_0001\\1", kNet, L"");
  mRegistry.SetText(kEnum + L"PCI\\VEN_8086&DEV_0001\\1", L"FriendlyName", L"Ethernet Controller #2");
  const std::vector<DeviceRecord> records = SetupDevices().List(DeviceClass::kNet);
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].mFriendlyName, "Ethernet Controller #2");
  EXPECT_EQ(records[0].mDriverVersion, "");
  EXPECT_EQ(records[0].mMemoryBytes, std::nullopt);
}

TEST_F(SetupDevicesTest, OverlongAndMistypedValuesDoNoHarm) {
  const std::wstring instance = L"PCI\\VEN_8086&DEV_0001\\1";
  AddDevice(instance, kNet, L"0000");
  mRegistry.SetText(kEnum + instance, L"FriendlyName", std::wstring(200'000, L'x'));
  mRegistry.SetNumber(kEnum + instance, L"DeviceDesc", 7);
  mRegistry.SetText(kEnum + instance, L"HardwareID", L"PCI\\VEN_8086");
  mRegistry.SetNumber(kClass + kNet + L"\\0000", L"DriverVersion", 7);
  mRegistry.SetText(kClass + kNet + L"\\0000", L"HardwareInformation.qwMemorySize", L"much");
  const std::vector<DeviceRecord> records = SetupDevices().List(DeviceClass::kNet);
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].mFriendlyName, "");
  EXPECT_EQ(records[0].mDescription, "");
  EXPECT_EQ(records[0].mDriverVersion, "");
  EXPECT_EQ(records[0].mMemoryBytes, std::nullopt);
}

TEST_F(SetupDevicesTest, AMachineOfTheRegistryBecomesComponents) {
  AddGraphicsCard();
  AddDevice(L"ROOT\\MEDIA\\0000", kMedia, L"0003");
  mRegistry.SetText(kEnum + L"ROOT\\MEDIA\\0000", L"DeviceDesc", L"@oem4.inf,%name%;Virtual Cable");
  mRegistry.SetText(kClass + kMedia + L"\\0003", L"DriverVersion", L"3.3.1.7");
  utility::OSComponent::EnableSupportProperties(false);
  SystemFacts facts;
  facts.mVersion = utility::OSComponentVersion(10, 0, 19045, 3803);
  EXPECT_THAT(
      testsupport::Lines(ReadMachine(SetupDevices(), facts, {}, std::nullopt)),
      ElementsAre("OS | Windows | 10.0.19045.3803", "Video | NVIDIA GeForce RTX 3070 \xC3\xA9 | 31.0.15.3623",
                  "Audio | Virtual Cable | 3.3.1.7"));
}

}  // namespace
}  // namespace qelcore::host::windows
