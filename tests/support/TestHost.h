// A host for one test: directories of its own, and a record of all that the library says.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelappsupport.h"
#include "platform/qelcore/Components.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

/// Sets the reference host up on fresh directories, with tracing at the level of detail, the language "en_US"
/// and no components, and records trace messages, logged exceptions, events and usage statistics. One at a
/// time.
class TestHost {
 public:
  struct TraceMessage {
    std::string mChannel;
    int mLevel;
    std::string mText;

    friend bool operator==(const TraceMessage&, const TraceMessage&) = default;
  };

  TestHost();
  ~TestHost();
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  /// Directories as paths below the temporary one, which are created.
  [[nodiscard]] std::filesystem::path Preferences() const { return mDirectory.Path() / "preferences"; }
  [[nodiscard]] std::filesystem::path Application() const { return mDirectory.Path() / "application"; }
  [[nodiscard]] const TemporaryDirectory& Files() const { return mDirectory; }

  /// The machine that the registry presents from now on.
  void SetComponents(qelcore::utility::OSComponentRegistry::Components components);

  /// No registry can be had from now on.
  void TakeRegistryAway();

  /// The texts that were traced on the library's channel at this level.
  [[nodiscard]] std::vector<std::string> Traced(int level) const;

  /// What other threads say is recorded too; look at it when they are known to be done.
  std::vector<TraceMessage> mTrace;
  std::vector<std::string> mExceptionContexts;
  std::vector<std::string> mExceptionTexts;
  std::vector<qelappsupport::analytics::SDMEvent> mEvents;
  std::vector<qelcore::host::UsageEntry> mUsageEntries;
  /// Called for each entry of the usage statistics, after it was recorded.
  std::function<void()> mOnUsageEntry;
  /// What `OSComponentRegistry::Get` was asked with.
  std::vector<bool> mRegistryRequests;

 private:
  TemporaryDirectory mDirectory;
  mutable std::mutex mMutex;  ///< guards the records
};

/// A component for a test's machine.
[[nodiscard]] std::shared_ptr<qelcore::utility::OSComponent> Component(qelcore::utility::OSComponentType type,
                                                                       const std::string& name,
                                                                       const std::string& version);
[[nodiscard]] std::shared_ptr<qelcore::utility::OSComponent> Property(const std::string& name,
                                                                      const std::string& value);

}  // namespace testsupport
