#include "host/qelcore/windows/components/SystemFacts.h"

#include <gtest/gtest.h>

#include "tests/host/qelcore/windows/components/OwnRegistry.h"

namespace qelcore::host::windows {
namespace {

constexpr const wchar_t* kVersion = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr const wchar_t* kFirmware = L"HARDWARE\\DESCRIPTION\\System\\BIOS";
constexpr const wchar_t* kProcessor = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
constexpr const wchar_t* kControl = L"SYSTEM\\CurrentControlSet\\Control";

TEST(SystemFactsTest, TheRunningMachineHasThese) {
  const SystemFacts facts = ReadSystemFacts();
  EXPECT_TRUE(static_cast<bool>(facts.mVersion));
  EXPECT_GE(facts.mVersion.mVersionW, 6U);
  EXPECT_GT(facts.mVersion.mVersionY, 0U);
  EXPECT_FALSE(facts.mProductName.empty());
  EXPECT_EQ(facts.mArchitecture, "x86_64");
  EXPECT_FALSE(facts.mLanguage.empty());
  EXPECT_FALSE(facts.mProcessorName.empty());
  ASSERT_TRUE(facts.mCores && facts.mLogicalProcessors);
  EXPECT_GE(*facts.mCores, 1U);
  EXPECT_GE(*facts.mLogicalProcessors, *facts.mCores);
  ASSERT_TRUE(facts.mMemoryBytes);
  EXPECT_GT(*facts.mMemoryBytes, std::uint64_t{1} << 28);
  EXPECT_FALSE(facts.mIsContainer);
  EXPECT_EQ(facts.mFreeBytes, std::nullopt);
}

TEST(SystemFactsTest, TheRegistryGivesTheRest) {
  testsupport::OwnRegistry registry;
  registry.SetNumber(kVersion, L"UBR", 3803);
  registry.SetText(kVersion, L"ProductName", L"Windows 10 Pro");
  registry.SetText(kVersion, L"DisplayVersion", L"22H2");
  registry.SetText(kFirmware, L"SystemManufacturer", L"LENOVO");
  registry.SetText(kFirmware, L"SystemProductName", L"82RF");
  registry.SetText(kFirmware, L"BaseBoardManufacturer", L"LENOVO board");
  registry.SetText(kFirmware, L"BIOSVendor", L"American Megatrends Inc.");
  registry.SetText(kFirmware, L"BIOSVersion", L"J2CN49WW");
  registry.SetText(kFirmware, L"BIOSReleaseDate", L"03/14/2023");
  registry.SetText(kProcessor, L"ProcessorNameString", L"AMD Ryzen 7");
  registry.SetNumber(std::wstring(kControl) + L"\\SecureBoot\\State", L"UEFISecureBootEnabled", 1);
  registry.SetNumber(kControl, L"ContainerType", 2);
  const SystemFacts facts = ReadSystemFacts();
  EXPECT_EQ(facts.mVersion.mVersionZ, 3803U);
  EXPECT_EQ(facts.mProductName, "Windows 10 Pro");
  EXPECT_EQ(facts.mDisplayVersion, "22H2");
  EXPECT_EQ(facts.mFirmware.mManufacturer, "LENOVO");
  EXPECT_EQ(facts.mFirmware.mModel, "82RF");
  EXPECT_EQ(facts.mFirmware.mBoardManufacturer, "LENOVO board");
  EXPECT_EQ(facts.mFirmware.mFirmwareVendor, "American Megatrends Inc.");
  EXPECT_EQ(facts.mFirmwareVersion, "J2CN49WW");
  EXPECT_EQ(facts.mFirmwareDate, "03/14/2023");
  EXPECT_EQ(facts.mProcessorName, "AMD Ryzen 7");
  EXPECT_EQ(facts.mIsSecureBootEnabled, true);
  EXPECT_TRUE(facts.mIsContainer);
}

TEST(SystemFactsTest, AnEmptyRegistryLeavesThemOut) {
  const testsupport::OwnRegistry registry;
  const SystemFacts facts = ReadSystemFacts();
  EXPECT_EQ(facts.mVersion.mVersionZ, 0U);
  EXPECT_EQ(facts.mProductName, "");
  EXPECT_EQ(facts.mIsSecureBootEnabled, std::nullopt);
  EXPECT_FALSE(facts.mIsContainer);
}

}  // namespace
}  // namespace qelcore::host::windows
