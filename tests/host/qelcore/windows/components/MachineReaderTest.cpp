// The machine that the tests run on, by shape: what it has is not known here.
#include "host/qelcore/components/MachineReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "tests/host/qelcore/components/ComponentLines.h"
#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Key;
using testsupport::Lines;
using testsupport::TemporaryDirectory;
using utility::OSComponent;
using utility::OSComponentType;

class WindowsMachineReader : public ::testing::Test {
 protected:
  WindowsMachineReader() {
    const std::string path = mPreferences.Path().string();
    SetDirectories({path, path, path, path});
    SetExceptionSink([this](const std::exception_ptr& exception, std::string_view) {
      mLogged.push_back(DescribeException(exception));
    });
  }
  ~WindowsMachineReader() override { SetExceptionSink({}); }

  TemporaryDirectory mPreferences;
  std::vector<std::string> mLogged;
};

TEST_F(WindowsMachineReader, HasAnOperatingSystemAndWellFormedComponents) {
  const auto components = ReadThisMachine(true);
  ASSERT_FALSE(components.empty());
  EXPECT_EQ(components[0]->GetType(), OSComponentType::kOS);
  EXPECT_EQ(components[0]->GetName(), "Windows");
  EXPECT_TRUE(static_cast<bool>(components[0]->GetVersion()));
  OSComponentType previous = OSComponentType::kOS;
  for (const auto& component : components) {
    EXPECT_FALSE(component->GetName().empty());
    EXPECT_LE(previous, component->GetType()) << component->GetName();
    EXPECT_LE(component->GetType(), OSComponentType::kNetwork);
    previous = component->GetType();
  }
  EXPECT_THAT(mLogged, IsEmpty());
}

TEST_F(WindowsMachineReader, ReadsPropertiesAndSavesThem) {
  OSComponent::EnableSupportProperties(true);
  std::map<std::string, std::string> properties;
  for (const auto& component : ReadThisMachine(true)) {
    if (component->GetType() != OSComponentType::kProperty) continue;
    EXPECT_FALSE(component->GetPropertyValue().empty()) << component->GetName();
    EXPECT_TRUE(properties.emplace(component->GetName(), component->GetPropertyValue()).second)
        << component->GetName();
  }
  for (const char* name : {"cpu.logical_processors", "disk.free_gb", "gpu.count", "memory.mb",
                           "os.architecture", "os.kernel_release", "system.virtualisation"}) {
    EXPECT_THAT(properties, Contains(Key(name)));
  }
  EXPECT_TRUE(std::filesystem::exists(mPreferences.Path() / "SystemProperties.json"));
  EXPECT_THAT(mLogged, IsEmpty());
}

TEST_F(WindowsMachineReader, ALaunchGivesWhatTheExplicitRunGave) {
  OSComponent::EnableSupportProperties(true);
  const auto explicitRun = Lines(ReadThisMachine(true));
  EXPECT_EQ(Lines(ReadThisMachine(false)), explicitRun);
}

TEST_F(WindowsMachineReader, DeletesSavedProperties) {
  OSComponent::EnableSupportProperties(true);
  static_cast<void>(ReadThisMachine(true));
  DeleteSavedProperties();
  EXPECT_FALSE(std::filesystem::exists(mPreferences.Path() / "SystemProperties.json"));
  EXPECT_NO_THROW(DeleteSavedProperties());
}

TEST_F(WindowsMachineReader, WithoutAPreferencesDirectoryTheMachineIsReadAllTheSame) {
  OSComponent::EnableSupportProperties(true);
  const std::string file = mPreferences.Write("file", "").string();
  SetDirectories({file + "/below", file, file, file});
  const auto lines = Lines(ReadThisMachine(false));
  EXPECT_THAT(lines, Contains(::testing::StartsWith("Property | memory.mb | ")));
  EXPECT_FALSE(mLogged.empty());
}

}  // namespace
}  // namespace qelcore::host
