#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include "tests/host/qelcore/linux/components/MachineTree.h"
using testsupport::Lines;
using testsupport::MachineTree;
TEST(Dump, All) {
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  for (auto& n : MachineTree::Names()) {
    std::cout << "== " << n << "\n";
    for (auto& l : Lines(MachineTree::Recorded(n).Read())) std::cout << l << "\n";
  }
}
