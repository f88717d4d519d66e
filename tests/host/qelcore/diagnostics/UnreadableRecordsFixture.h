// The records of a host, in a preferences directory where something is in their way.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/CrashTrail.h"
#include "host/qelcore/HostSetup.h"
#include "tests/support/TestHost.h"

namespace testsupport {

/// A kind of records: the names of its files, and reading them back.
struct Records {
  std::vector<std::string> mFiles;
  std::function<bool()> mHasAny;  ///< throws when they cannot be read
};

inline std::vector<Records> AllRecords() {
  return {{{"analytics-events.jsonl", "analytics-events.jsonl.1"},
           [] { return !qelappsupport::host::ReadEvents().mEvents.empty(); }},
          {{"usage-statistics.jsonl", "usage-statistics.jsonl.1"},
           [] { return !qelcore::host::ReadUsageEntries().mEntries.empty(); }},
          {{"crash-trail.json"}, [] { return qelcore::host::ReadLastTrail().has_value(); }}};
}

class UnreadableRecords : public testing::Test {
 protected:
  /// Reading throws, and says which file it is.
  static void ExpectError(const Records& records, const std::filesystem::path& path) {
    try {
      static_cast<void>(records.mHasAny());
      ADD_FAILURE() << path << " was read";
    } catch (const std::runtime_error& error) {
      const std::string message = error.what();
      EXPECT_TRUE(message.starts_with(path.string() + ": ")) << message;
      EXPECT_FALSE(message.ends_with('.')) << message;
    }
  }

  /// Puts something in the place of each file, one after the other, and expects an error.
  void ExpectErrors(const std::function<void(const std::filesystem::path&)>& put) const {
    for (const Records& records : AllRecords()) {
      for (const std::string& name : records.mFiles) {
        const std::filesystem::path path = mHost.Preferences() / name;
        put(path);
        ExpectError(records, path);
        std::filesystem::remove(path);
      }
    }
  }

  TestHost mHost;
};

}  // namespace testsupport
