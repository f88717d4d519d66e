// The platform cannot do what it is asked for and says so: no registry, no text, no file, no. Nothing gets
// out of the library, and the same call works afterwards.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <iterator>
#include <memory>
#include <set>
#include <string>

#include "platform/qelappsupport.h"
#include "platform/qelcore/Components.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/UsageStatistics.h"
#include "platform/qelscripting.h"
#include "tests/faults/platform/PlatformFaults.h"
#include "tests/faults/platform/Scenarios.h"

namespace {

using testsupport::Scenario;
using testsupport::World;

// Each takes what the function takes that it stands for, or passes it over.
std::shared_ptr<const qelcore::utility::OSComponentRegistry> NoRegistry(bool) {
  return nullptr;
}
std::shared_ptr<qelcore::config::UsageLogger> NoLogger() {
  return nullptr;
}
void* Null() {
  return nullptr;
}
bool No() {
  return false;
}
int Error() {
  return 1;
}
std::string NoText() {
  return {};
}
std::u16string NoWideText() {
  return {};
}
std::any NoValue() {
  return {};
}
qelcore::Guid NullGuid() {
  return {};
}
qelscripting::ScriptComponentGroups NoGroups(std::string_view) {
  return {};
}

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

const struct Refusal {
  const char* mFunction;  ///< a part of its declaration
  void* mAnswer;
} kRefusals[] = {
    {"OSComponentRegistry::Get(", Address(NoRegistry)},
    {"UsageLogger::Get(", Address(NoLogger)},
    {"NodeManager::Get(", Address(Null)},
    {"Locale::ApplicationLanguage", Address(NoText)},
    {"qelcore::GetApplicationName", Address(NoWideText)},
    {"qelcore::Localise", Address(NoWideText)},
    {"File::Exists() const", Address(No)},
    {"Dir::Exists() const", Address(No)},
    {"IPlatformByteStream::ReadAll", Address(NoText)},
    {"qelnet::GET(", Address(No)},
    {"IsFeatureEnabled(", Address(No)},
    {"OpenURLInDefaultBrowser(", Address(No)},
    {"IsWebAddress(", Address(No)},
    {"FileUtils::ConvertEnvPath(", Address(Error)},
    {"FileUtils::GetFileVersion", Address(NoText)},
    {"Guid::FromUTF8String(", Address(NullGuid)},
    {"json::Parse(", Address(NoValue)},
    {"OSComponent::FromJSONString(", Address(No)},
    {"OSComponent::ReadFrom(", Address(No)},
    {"OS_FileSaveAsDialog::RunModal", Address(NoWideText)},
    {"GetScriptComponentGroupDefinitions(", Address(NoGroups)},
};

class PlatformRefusals : public testing::TestWithParam<Scenario> {
 protected:
  PlatformRefusals() { testsupport::PreparePlatform(); }

  std::string Outcome() {
    World world;
    GetParam().mPrepare(world);
    GetParam().mCall(world);
    return GetParam().mOutcome(world);
  }

  void Refuse(const Refusal& refusal) {
    World world;
    GetParam().mPrepare(world);
    world.mHost.mExceptionContexts.clear();
    testsupport::AnswerPlatformCall(refusal.mFunction, refusal.mAnswer);
    EXPECT_NO_THROW(GetParam().mCall(world));
    testsupport::AnswerPlatformCall(refusal.mFunction, nullptr);
    for (const std::string& context : world.mHost.mExceptionContexts)
      EXPECT_THAT(testsupport::LoggedNames(GetParam()), testing::Contains(context));
    EXPECT_EQ(world.mToolkit.mDialogsAlive, 0);
    EXPECT_NO_THROW(GetParam().mCall(world));
  }
};

TEST_P(PlatformRefusals, NothingGetsOut) {
  const std::string outcome = Outcome();
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(refusal.mFunction);
    Refuse(refusal);
    EXPECT_EQ(Outcome(), outcome);
  }
}

INSTANTIATE_TEST_SUITE_P(During, PlatformRefusals, testing::ValuesIn(testsupport::Scenarios()),
                         [](const auto& scenario) { return scenario.param.mName; });

/// A refusal of something that nobody asks for would prove nothing.
TEST(PlatformRefusalsTest, EveryFunctionIsAskedInSomeScenario) {
  testsupport::PreparePlatform();
  std::string called;
  for (const Scenario& scenario : testsupport::Scenarios()) {
    World world;
    scenario.mPrepare(world);
    testsupport::RecordPlatformCalls();
    scenario.mCall(world);
    for (const testsupport::PlatformCall& call : testsupport::RecordedPlatformCalls())
      called += call.mFunction + "\n";
  }
  for (const Refusal& refusal : kRefusals)
    EXPECT_NE(called.find(refusal.mFunction), std::string::npos) << refusal.mFunction;
}

}  // namespace
