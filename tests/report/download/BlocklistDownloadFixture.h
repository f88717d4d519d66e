// What the tests of the download have in common: a main thread driven by hand, a server, and what came back.
#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistDownloadSteps.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TestHost.h"

namespace testsupport {

/// Results that arrive on any thread.
class DownloadResults {
 public:
  using Result = qelsystemcompatibilityreport::DownloadResult;

  void Add(Result result) {
    const std::lock_guard lock(mMutex);
    mResults.push_back(result);
    mChanged.notify_all();
  }

  /// Waits until there are that many, and returns all.
  [[nodiscard]] std::vector<Result> WaitFor(std::size_t count) {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [&] { return mResults.size() >= count; });
    return mResults;
  }

  [[nodiscard]] std::vector<Result> Now() {
    const std::lock_guard lock(mMutex);
    return mResults;
  }

 private:
  std::mutex mMutex;
  std::condition_variable mChanged;
  std::vector<Result> mResults;
};

/// An answer as a server gives it.
class ScriptedResponse final : public qelnet::Response {
 public:
  ScriptedResponse(int status, std::string body) : mStatus(status), mBody(std::move(body)) {}
  [[nodiscard]] int GetStatus() const override { return mStatus; }
  [[nodiscard]] std::string GetPayloadAsUTF8String() const override { return mBody; }

 private:
  int mStatus;
  std::string mBody;
};

class BlocklistDownloadFixture : public ::testing::Test {
 protected:
  using DownloadResult = qelsystemcompatibilityreport::DownloadResult;

  BlocklistDownloadFixture() {
    qelcore::host::SetMainThreadClock([this] { return mMilliseconds; });
  }
  ~BlocklistDownloadFixture() override {
    qelnet::host::Shutdown();
    qelcore::host::SetMainThreadClock({});
    qelcore::host::SetFileOperationHook({});
  }

  [[nodiscard]] qelsystemcompatibilityreport::DownloadCallback Callback() {
    return [this](DownloadResult result) { mResults.Add(result); };
  }

  /// Lets time pass on the main thread and runs what is due. Returns how many tasks ran.
  std::size_t Advance(std::uint64_t milliseconds) {
    mMilliseconds += milliseconds;
    return qelcore::host::RunDueMainThreadTasks();
  }

  /// What the downloaded file holds; "-" when there is none.
  [[nodiscard]] std::string Downloaded() const {
    const auto path = mHost.Files().Path() / kDownloaded;
    return std::filesystem::exists(path) ? ReadWholeFile(path) : "-";
  }

  static constexpr const char* kDownloaded =
      "preferences/SystemCompatibilityReport/-1.-1/win/blocklist.en_US.json";

  /// A blocklist that verifies.
  [[nodiscard]] static std::string GoodBlocklist(const std::string& warning = "new") {
    std::string defaults;
    for (const char* const kind : {"OS", "Video", "Audio", "Network", "File", "Property"}) {
      defaults += std::string(defaults.empty() ? "" : ",") + '"' + kind +
                  R"(":{"info_message":"m","info_url":"https://example.com"})";
    }
    return R"({"blocklist_version":1,"default_info":{)" + defaults + R"(},"second_warning":")" + warning +
           R"(","blocklist":[]})";
  }

  EnvironmentVariable mNoProxy{"no_proxy", "*"};
  TestHost mHost;
  DownloadResults mResults;

 private:
  std::uint64_t mMilliseconds = 0;
};

}  // namespace testsupport
