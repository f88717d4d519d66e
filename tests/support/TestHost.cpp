#include "tests/support/TestHost.h"

#include <utility>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"

namespace testsupport {

namespace host = qelcore::host;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;

TestHost::TestHost() {
  const auto create = [&](const char* name) {
    const std::filesystem::path path = mDirectory.Path() / name;
    std::filesystem::create_directory(path);
    return path.string();
  };
  host::SetDirectories({.mPreferences = create("preferences"),
                        .mApplication = create("application"),
                        .mDocuments = create("documents"),
                        .mState = create("state")});
  host::SetApplicationLanguage("en_US");
  host::SetTraceSink([this](std::string_view channel, int level, std::string_view text) {
    const std::lock_guard lock(mMutex);
    mTrace.push_back({std::string(channel), level, std::string(text)});
  });
  host::SetTraceLevel(6);
  host::SetExceptionSink([this](const std::exception_ptr& exception, std::string_view context) {
    const std::lock_guard lock(mMutex);
    mExceptionContexts.emplace_back(context);
    mExceptionTexts.push_back(host::DescribeException(exception));
  });
  qelappsupport::host::SetEventSink([this](const qelappsupport::analytics::SDMEvent& event) {
    const std::lock_guard lock(mMutex);
    mEvents.push_back(event);
  });
  host::SetUsageSink([this](const host::UsageEntry& entry) {
    {
      const std::lock_guard lock(mMutex);
      mUsageEntries.push_back(entry);
    }
    if (mOnUsageEntry) mOnUsageEntry();
  });
  SetComponents({});
}

TestHost::~TestHost() {
  host::SetComponentSource({});
  host::SetUsageSink({});
  host::SetExceptionSink({});
  host::SetTraceSink({});
  host::SetTraceLevel(0);
  qelappsupport::host::SetEventSink({});
}

void TestHost::SetComponents(OSComponentRegistry::Components components) {
  auto registry = std::make_shared<const OSComponentRegistry>(std::move(components));
  host::SetComponentSource([this, registry](bool explicitRun) {
    mRegistryRequests.push_back(explicitRun);
    return registry;
  });
}

void TestHost::TakeRegistryAway() {
  host::SetComponentSource([this](bool explicitRun) {
    mRegistryRequests.push_back(explicitRun);
    return std::shared_ptr<const OSComponentRegistry>();
  });
}

std::vector<std::string> TestHost::Traced(int level) const {
  const std::lock_guard lock(mMutex);
  std::vector<std::string> texts;
  for (const TraceMessage& message : mTrace) {
    if (message.mChannel == "SystemCompatibilityReport" && message.mLevel == level) {
      texts.push_back(message.mText);
    }
  }
  return texts;
}

std::shared_ptr<OSComponent> Component(OSComponentType type, const std::string& name,
                                       const std::string& version) {
  return std::make_shared<OSComponent>(type, name, OSComponentVersion(version));
}

std::shared_ptr<OSComponent> Property(const std::string& name, const std::string& value) {
  return std::make_shared<OSComponent>(OSComponentType::kProperty, name, OSComponentVersion(), value);
}

}  // namespace testsupport
