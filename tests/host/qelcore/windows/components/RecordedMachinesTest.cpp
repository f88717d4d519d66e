// Every recorded Windows machine, component by component, on every system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/host/qelcore/components/ComponentLines.h"
#include "tests/host/qelcore/windows/components/RecordedMachine.h"

namespace {

using qelcore::utility::OSComponent;
using testing::ElementsAreArray;
using testsupport::Lines;
using testsupport::RecordedMachine;

class RecordedWindowsMachine : public testing::TestWithParam<std::string> {};

TEST_P(RecordedWindowsMachine, HasTheseComponents) {
  OSComponent::EnableSupportProperties(true);
  const RecordedMachine machine(GetParam());
  EXPECT_THAT(Lines(machine.Read()), ElementsAreArray(machine.mExpected));
}

TEST_P(RecordedWindowsMachine, HasNoPropertiesUntilTheyAreSwitchedOn) {
  const RecordedMachine machine(GetParam());
  std::vector<std::string> lines = machine.mExpected;
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("Property"); });
  EXPECT_THAT(Lines(machine.Read()), ElementsAreArray(lines));
}

TEST_P(RecordedWindowsMachine, IsTheSameInWhateverOrderTheSystemListsItsDevices) {
  OSComponent::EnableSupportProperties(true);
  RecordedMachine machine(GetParam());
  for (auto& [deviceClass, records] : machine.mDevices.mByClass) {
    std::reverse(records.begin(), records.end());
  }
  EXPECT_THAT(Lines(machine.Read()), ElementsAreArray(machine.mExpected));
}

INSTANTIATE_TEST_SUITE_P(Recorded, RecordedWindowsMachine,
                         testing::Values("bluetooth-headset", "desktop-failing-gpu", "desktop-mixing",
                                         "desktop-offline", "desktop-russian", "desktop-virtual-networks",
                                         "desktop-voice", "hostile", "laptop-2009", "laptop-chinese",
                                         "laptop-french", "laptop-miniports", "laptop-personal", "vm-hyperv"),
                         [](const auto& row) {
                           std::string name = row.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(RecordedWindowsMachines, AreAllCovered) {
  EXPECT_THAT(RecordedMachine::Names(),
              testing::ElementsAre("bluetooth-headset", "desktop-failing-gpu", "desktop-mixing",
                                   "desktop-offline", "desktop-russian", "desktop-virtual-networks",
                                   "desktop-voice", "hostile", "laptop-2009", "laptop-chinese",
                                   "laptop-french", "laptop-miniports", "laptop-personal", "vm-hyperv"));
}

}  // namespace
