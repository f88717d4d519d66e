#include "host/qelcore/windows/components/Hypervisor.h"

#if defined(__x86_64__) || defined(_M_X64)
#include <intrin.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace qelcore::host::windows {
namespace {

constexpr std::uint32_t kFeatures = 1;
constexpr std::uint32_t kFirstHypervisorLeaf = 0x40000000;
constexpr std::uint32_t kLeafStep = 0x100;
constexpr std::uint32_t kPrivilegesOffset = 3;
constexpr int kMostHypervisors = 16;

constexpr std::uint32_t kHypervisorBit = std::uint32_t{1} << 31;
constexpr std::uint32_t kMayCreatePartitions = 1;

/// The registers A, B, C and D.
using Registers = std::array<std::uint32_t, 4>;

Registers Ask(std::uint32_t leaf) {
  std::array<int, 4> answer{};
  __cpuid(answer.data(), static_cast<int>(leaf));
  Registers registers{};
  std::memcpy(registers.data(), answer.data(), sizeof registers);
  return registers;
}

/// The name in the registers B, C and D, up to its null characters.
std::string NameIn(const Registers& registers) {
  std::array<char, 13> text{};
  std::memcpy(text.data(), &registers[1], 12);
  return text.data();
}

}  // namespace

HypervisorFacts ReadHypervisor() {
  constexpr const char* kHyperV = "Microsoft Hv";
  HypervisorFacts facts;
  facts.mIsPresent = (Ask(kFeatures)[2] & kHypervisorBit) != 0;
  if (!facts.mIsPresent) return facts;
  facts.mName = NameIn(Ask(kFirstHypervisorLeaf));
  if (facts.mName != kHyperV) return facts;
  // Others pass themselves off as this one, for which systems are prepared, and give their own name later.
  for (std::uint32_t index = 1; index < kMostHypervisors; ++index) {
    std::string name = NameIn(Ask(kFirstHypervisorLeaf + index * kLeafStep));
    if (name == "KVMKVMKVM" || name == "XenVMMXenVMM") {
      facts.mName = std::move(name);
      return facts;
    }
  }
  facts.mIsRootPartition = (Ask(kFirstHypervisorLeaf + kPrivilegesOffset)[1] & kMayCreatePartitions) != 0;
  return facts;
}

}  // namespace qelcore::host::windows

#else

namespace qelcore::host::windows {

HypervisorFacts ReadHypervisor() {
  return {};
}

}  // namespace qelcore::host::windows

#endif
