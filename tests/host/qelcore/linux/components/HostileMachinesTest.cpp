// Machines whose files are broken in every way that a machine of files can be.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "platform/qelcore/Json.h"
#include "tests/host/qelcore/linux/components/MachineTree.h"

namespace qelcore::host::components {
namespace {

using testsupport::Lines;
using testsupport::MachineTree;
using testsupport::TemporaryDirectory;
using utility::OSComponent;
using utility::OSComponentRegistry;
using utility::OSComponentType;

/// What holds for every component of every machine.
void ExpectWellFormed(const OSComponentRegistry::Components& components) {
  ASSERT_FALSE(components.empty());
  EXPECT_EQ(components[0]->GetName(), "Linux");
  OSComponentType previous = OSComponentType::kOS;
  for (const auto& component : components) {
    EXPECT_LE(previous, component->GetType());
    previous = component->GetType();
    EXPECT_FALSE(component->GetName().empty());
    // Two texts of at most 256 units of UTF-16 each, and a blank.
    EXPECT_LE(component->GetName().size(), 2u * 256u * 3u + 1u);
    for (const std::string& text : {component->GetName(), component->GetPropertyValue()}) {
      for (const char character : text) EXPECT_GE(static_cast<unsigned char>(character), 0x20u) << text;
    }
    // Text that is no UTF-8 would not come back.
    OSComponent copy;
    EXPECT_TRUE(copy.FromJSONString(json::Serialise(component->ToJSON())));
    EXPECT_EQ(copy, *component);
  }
}

class HostileMachinesTest : public ::testing::Test {
 protected:
  void SetUp() override { OSComponent::EnableSupportProperties(true); }
};

TEST_F(HostileMachinesTest, NothingOutsideTheRootIsRead) {
  const TemporaryDirectory outside;
  outside.Write("vendor", "0x10de\n");
  outside.Write("device", "0x2484\n");
  outside.Write("class", "0x030000\n");
  outside.Write("osrelease", "1.2.3.4\n");
  const std::string target = outside.Path().string();
  const MachineTree machine("sys/bus/pci/devices/0000:01:00.0 -> " + target +
                            "\n"
                            "sys/bus/pci/devices/0000:02:00.0 -> ../../../../../../../../../.." +
                            target +
                            "\n"
                            "proc/sys/kernel/osrelease -> " +
                            target + "/osrelease\n");
  EXPECT_THAT(Lines(machine.Read()),
              ::testing::ElementsAre(
                  "OS | Linux | ", "Property | display.server | none", "Property | gpu.count | 0",
                  "Property | system.secure_boot | unavailable", "Property | system.virtualisation | none"));
}

TEST_F(HostileMachinesTest, OverlongLinesAndHugeFilesAreCut) {
  const std::string megabyte(1'000'000, 'x');
  const MachineTree machine(
      "proc/sys/kernel/osrelease: 6.1." + megabyte + "\netc/os-release: NAME=" + megabyte +
      "\nsys/class/dmi/id/product_name: " + megabyte + "\nproc/cpuinfo: model name : " + megabyte +
      "\nsys/bus/pci/devices/1/class: 0x030000\nsys/bus/pci/devices/1/vendor: 0x8086\n" +
      "sys/bus/pci/devices/1/device: 0x" + megabyte +
      "\nsys/bus/pci/devices/2/class: 0x030000\nsys/bus/pci/devices/2/vendor: 0x8086\n" +
      "sys/bus/pci/devices/2/device: 0x0001\nusr/share/misc/pci.ids:\n    8086  " + megabyte +
      "\n    \t0001  " + megabyte + "\n");
  const auto components = machine.Read();
  ExpectWellFormed(components);
  EXPECT_EQ(components[0]->GetVersion().ToString(), "6.1.0.0");
  EXPECT_EQ(components[1]->GetName(), std::string(256, 'x'));
  EXPECT_EQ(components[2]->GetName(), std::string(256, 'x') + " " + std::string(256, 'x'));
}

TEST_F(HostileMachinesTest, ManyDevicesAreAllListed) {
  std::string tree = "proc/sys/kernel/osrelease: 6.1.0\n";
  for (int number = 0; number < 1'000; ++number) {
    const std::string start = "sys/bus/pci/devices/0000:" + std::to_string(number) + ":00.0/";
    tree += start + "class: 0x020000\n" + start + "vendor: 0x8086\n" + start + "device: 0x1563\n";
  }
  OSComponent::EnableSupportProperties(false);
  EXPECT_EQ(MachineTree(tree).Read().size(), 1'001u);
}

/// Changes one entry of a recorded machine's text.
std::string Mutate(const std::string& line, std::mt19937& random) {
  const std::string path = line.substr(0, line.find_first_of(" "));
  const std::string bare =
      path.ends_with(':') || path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
  switch (random() % 9) {
    case 0:
      return "";
    case 1:
      return bare + "/";
    case 2:
      return bare + " =";
    case 3:
      return bare + " = \\xff\\xfe\\0\\x01\\n\\n";
    case 4:
      return bare + " -> " + bare.substr(bare.rfind('/') + 1);
    case 5:
      return bare + " -> /";
    case 6:
      return bare + " -> ..";
    case 7:
      return bare + ": " + std::string(70'000, static_cast<char>('0' + random() % 10));
    default:
      return bare + ": 4294967295,-,:=\"'\\";
  }
}

class MutatedMachineTest : public ::testing::TestWithParam<std::string> {};

TEST_P(MutatedMachineTest, StaysWellFormed) {
  OSComponent::EnableSupportProperties(true);
  const std::string text = MachineTree::TextOf(GetParam());
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  std::mt19937 random(20'240'301);
  for (int round = 0; round < 25; ++round) {
    std::string mutated;
    for (const std::string& line : lines) {
      const bool isEntry =
          !line.empty() && std::string_view("#@ ").find(line.front()) == std::string_view::npos;
      const bool isBlock = line.ends_with(':');
      mutated += (isEntry && !isBlock && random() % 8 == 0 ? Mutate(line, random) : line) + "\n";
    }
    const MachineTree machine(mutated, MachineTree::Broken::kIsLeftOut);
    ExpectWellFormed(machine.Read());
    if (HasFailure()) {
      ADD_FAILURE() << "in round " << round;
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Recorded, MutatedMachineTest, ::testing::ValuesIn(MachineTree::Names()),
                         testsupport::TestName);

}  // namespace
}  // namespace qelcore::host::components
