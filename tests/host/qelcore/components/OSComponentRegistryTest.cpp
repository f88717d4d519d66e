#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Components.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;

std::shared_ptr<OSComponent> Make(OSComponentType type, const std::string& name) {
  return std::make_shared<OSComponent>(type, name, OSComponentVersion(1, 2, 3, 4));
}

std::vector<std::string> NamesOf(const OSComponentRegistry::Components& components) {
  std::vector<std::string> names;
  for (const auto& component : components) {
    names.push_back(component->GetName());
  }
  return names;
}

using Names = std::vector<std::string>;

TEST(OSComponentRegistry, GroupsByKindInItsOrder) {
  const OSComponentRegistry registry({Make(OSComponentType::kVideo, "v1"), nullptr,
                                      Make(OSComponentType::kOS, "o"), Make(OSComponentType::kVideo, "v2"),
                                      Make(OSComponentType::kProperty, "p"), std::make_shared<OSComponent>(),
                                      Make(OSComponentType::kVideo, "v1")});
  EXPECT_EQ(NamesOf(registry.GetAllComponents()), (Names{"v1", "o", "v2", "p", "", "v1"}));
  EXPECT_EQ(NamesOf(registry.GetComponentsOfType(OSComponentType::kVideo)), (Names{"v1", "v2", "v1"}));
  EXPECT_EQ(NamesOf(registry.GetComponentsOfType(OSComponentType::kOS)), Names{"o"});
  EXPECT_EQ(NamesOf(registry.GetComponentsOfType(OSComponentType::kProperty)), Names{"p"});
  EXPECT_TRUE(registry.GetComponentsOfType(OSComponentType::kFile).empty());
  EXPECT_TRUE(registry.GetComponentsOfType(OSComponentType::kInvalid).empty());
  EXPECT_TRUE(registry.GetComponentsOfType(static_cast<OSComponentType>(6)).empty());
}

TEST(OSComponentRegistry, HashCoversContentAndOrder) {
  const auto hashOf = [](const Names& names) {
    OSComponentRegistry::Components components;
    for (const std::string& name : names) {
      components.push_back(Make(OSComponentType::kVideo, name));
    }
    return OSComponentRegistry(components).Hash();
  };
  EXPECT_EQ(hashOf({"a", "b"}), hashOf({"a", "b"}));
  EXPECT_NE(hashOf({"a", "b"}), hashOf({"b", "a"}));
  EXPECT_NE(hashOf({"a", "b"}), hashOf({"a"}));
  EXPECT_NE(hashOf({"a"}), hashOf({"a", "a"}));
  EXPECT_NE(hashOf({"ab", ""}), hashOf({"a", "b"}));
  EXPECT_NE(hashOf({}), hashOf({""}));
}

TEST(OSComponentRegistry, HandsOutWhatTheSourceReturns) {
  const auto registry = std::make_shared<const OSComponentRegistry>(OSComponentRegistry::Components());
  std::vector<bool> asked;
  qelcore::host::SetComponentSource([&](bool explicitRun) {
    asked.push_back(explicitRun);
    return registry;
  });
  EXPECT_EQ(OSComponentRegistry::Get(true), registry);
  EXPECT_EQ(OSComponentRegistry::Get(false), registry);
  EXPECT_EQ(asked, (std::vector<bool>{true, false}));
  qelcore::host::SetComponentSource([](bool) { return nullptr; });
  EXPECT_EQ(OSComponentRegistry::Get(false), nullptr);
}

TEST(OSComponentRegistry, ASourceThatThrowsGivesNothingAndIsLogged) {
  Names logged;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    logged.push_back(std::string(context) + ": " + qelcore::host::DescribeException(exception));
  });
  qelcore::host::SetComponentSource(
      [](bool) -> std::shared_ptr<const OSComponentRegistry> { throw std::runtime_error("no devices"); });
  EXPECT_EQ(OSComponentRegistry::Get(true), nullptr);
  EXPECT_EQ(logged, Names{"qelcore::utility::OSComponentRegistry::Get: no devices"});
}

/// Tests of the running machine keep what it saves out of the real preferences.
class RunningMachine : public testing::Test {
 protected:
  void SetUp() override {
    qelcore::host::SetDirectories({.mPreferences = (mDirectory.Path() / "preferences").string(),
                                   .mApplication = (mDirectory.Path() / "application").string(),
                                   .mDocuments = (mDirectory.Path() / "documents").string(),
                                   .mState = (mDirectory.Path() / "state").string()});
  }

  testsupport::TemporaryDirectory mDirectory;
};

TEST_F(RunningMachine, HasAnOperatingSystem) {
  const auto registry = OSComponentRegistry::Get(true);
  ASSERT_NE(registry, nullptr);
  EXPECT_FALSE(registry->GetComponentsOfType(OSComponentType::kOS).empty());
  EXPECT_TRUE(registry->GetComponentsOfType(OSComponentType::kProperty).empty());
}

TEST_F(RunningMachine, OnlyAnExplicitRunReadsAgain) {
  const auto first = OSComponentRegistry::Get(false);
  EXPECT_EQ(OSComponentRegistry::Get(false), first);
  const auto anew = OSComponentRegistry::Get(true);
  EXPECT_NE(anew, first);
  EXPECT_EQ(OSComponentRegistry::Get(false), anew);
  EXPECT_EQ(anew->Hash(), first->Hash());
}

TEST_F(RunningMachine, SwitchingPropertiesOnReadsAgain) {
  const auto without = OSComponentRegistry::Get(false);
  OSComponent::EnableSupportProperties(true);
  const auto with = OSComponentRegistry::Get(false);
  EXPECT_NE(with, without);
  EXPECT_FALSE(with->GetComponentsOfType(OSComponentType::kProperty).empty());
  EXPECT_EQ(OSComponentRegistry::Get(false), with);
}

TEST_F(RunningMachine, DeletingSavedPropertiesNeverThrows) {
  EXPECT_NO_THROW(OSComponentRegistry::DeletePropertiesFromPrefsDir());
  OSComponent::EnableSupportProperties(true);
  (void)OSComponentRegistry::Get(true);
  EXPECT_NO_THROW(OSComponentRegistry::DeletePropertiesFromPrefsDir());
  EXPECT_NO_THROW(OSComponentRegistry::DeletePropertiesFromPrefsDir());
}

TEST_F(RunningMachine, AFailureToDeleteSavedPropertiesIsLogged) {
  OSComponent::EnableSupportProperties(true);
  (void)OSComponentRegistry::Get(true);
  Names contexts;
  qelcore::host::SetExceptionSink(
      [&](const std::exception_ptr&, std::string_view context) { contexts.emplace_back(context); });
  qelcore::host::SetFileOperationHook([](qelcore::host::FileOperation operation, const std::string&) {
    if (operation == qelcore::host::FileOperation::kDelete) {
      throw std::runtime_error("the disk is read-only");
    }
  });
  EXPECT_NO_THROW(OSComponentRegistry::DeletePropertiesFromPrefsDir());
  EXPECT_EQ(contexts, Names{"qelcore::utility::OSComponentRegistry::DeletePropertiesFromPrefsDir"});
}

TEST(OSComponentRegistry, StatisticsGoToTheTrace) {
  Names messages;
  qelcore::host::SetTraceSink([&](std::string_view channel, int level, std::string_view text) {
    messages.push_back(std::string(channel) + ' ' + std::to_string(level) + ' ' + std::string(text));
  });
  const OSComponentRegistry registry({Make(OSComponentType::kVideo, "v"), Make(OSComponentType::kVideo, "w"),
                                      Make(OSComponentType::kOS, "o")});
  qelcore::host::SetTraceLevel(5);
  registry.LogToAnalytics();
  EXPECT_EQ(messages, Names());
  qelcore::host::SetTraceLevel(6);
  registry.LogToAnalytics();
  EXPECT_EQ(
      messages,
      Names{"OSComponentRegistry 6 3 components: OS 1, Video 2, Audio 0, Network 0, File 0, Property 0"});
}

}  // namespace
