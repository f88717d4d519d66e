// Nothing that identifies a person or a single machine may become part of a component.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "tests/host/qelcore/linux/components/MachineTree.h"

namespace qelcore::host::components {
namespace {

using testsupport::Lines;
using testsupport::MachineTree;

/// What the recorded machines hold in their serial numbers, asset tags, addresses and names, in lower case.
constexpr std::string_view kPersonal[] = {
    "pf3serial77",   "asset-4711",    "4c4c4544", "5e10aa", "5e:10:aa", "001000001", "annas",
    "anna.beispiel", "anna beispiel", "mikrofon", "enx",    "0000:0",   "fef0"};

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
  return text;
}

class PersonalDataTest : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { utility::OSComponent::EnableSupportProperties(true); }
};

TEST_P(PersonalDataTest, IsInNoComponent) {
  const auto components = MachineTree::Recorded(GetParam()).Read();
  ASSERT_FALSE(components.empty());
  for (const std::string& line : Lines(components)) {
    for (const std::string_view personal : kPersonal) {
      EXPECT_EQ(LowerCase(line).find(personal), std::string::npos) << line;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Recorded, PersonalDataTest, ::testing::ValuesIn(MachineTree::Names()),
                         testsupport::TestName);

TEST(PersonalDataInRecordsTest, EachKindIsInSomeRecord) {
  std::string all;
  for (const std::string& name : MachineTree::Names()) all += LowerCase(MachineTree::TextOf(name));
  for (const std::string_view personal : kPersonal) {
    EXPECT_NE(all.find(personal), std::string::npos) << personal;
  }
}

}  // namespace
}  // namespace qelcore::host::components
