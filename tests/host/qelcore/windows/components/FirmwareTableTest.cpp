#include "host/qelcore/windows/components/FirmwareTable.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace qelcore::host::windows {
namespace {

/// A structure of the table with its texts.
std::string Structure(char type, const std::string& fields, const std::string& texts = std::string("\0", 1)) {
  return std::string{type, static_cast<char>(4 + fields.size()), '\x10', '\0'} + fields + texts +
         std::string("\0", 1);
}

std::string Table(const std::string& structures) {
  return std::string("\0\3\2\0", 4) + std::string("\xff\xff\0\0", 4) + structures;
}

const std::string kFirmware = Structure(0, std::string(20, '\1'), std::string("Vendor\0Version\0", 15));
const std::string kSystem = Structure(1, std::string(23, '\1'), std::string("Maker\0Model\0SERIAL\0", 19));
const std::string kEnd = Structure(127, "");

std::string Chassis(char number) {
  return Structure(3, std::string("\1") + number + std::string(10, '\2'), std::string("Maker\0SERIAL\0", 13));
}

TEST(FirmwareTable, HasTheChassisNumber) {
  EXPECT_EQ(ReadChassisNumber(Table(kFirmware + kSystem + Chassis(10) + kEnd)), 10);
  EXPECT_EQ(ReadChassisNumber(Table(Chassis(3))), 3);
}

TEST(FirmwareTable, TheBitOfTheLockIsNoPartOfTheNumber) {
  EXPECT_EQ(ReadChassisNumber(Table(Chassis('\x8A'))), 10);
}

TEST(FirmwareTable, TheFirstChassisCounts) {
  EXPECT_EQ(ReadChassisNumber(Table(Chassis(9) + Chassis(12) + kEnd)), 9);
}

TEST(FirmwareTable, NothingStandsBehindTheEnd) {
  EXPECT_EQ(ReadChassisNumber(Table(kFirmware + kEnd + Chassis(9))), std::nullopt);
}

TEST(FirmwareTable, WhatIsNoTableHasNone) {
  for (const std::string& table :
       {std::string(), std::string(3, '\0'), std::string(8, '\0'), std::string(200, '\0'),
        std::string(200, '\xff'), Table(kFirmware + kSystem + kEnd), Table(std::string("\3\4\0\0\0\0", 6)),
        Table(std::string("\3\3\0\0\1\1", 6)), Table(std::string("\3\xff\0\0\1\1", 6)),
        Table(std::string("\0\4\0\0no end", 10))}) {
    EXPECT_EQ(ReadChassisNumber(table), std::nullopt) << table.size();
  }
}

TEST(FirmwareTable, NoCutReadsBeyondTheBytes) {
  const std::string whole = Table(kFirmware + kSystem + Chassis(10) + kEnd);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    // A buffer of exactly this size, so that sanitizers see every byte too many.
    const std::string cut(whole.data(), length);
    const auto number = ReadChassisNumber(cut);
    EXPECT_TRUE(!number || *number == 10) << length;
  }
}

}  // namespace
}  // namespace qelcore::host::windows
