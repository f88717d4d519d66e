// What the tests of the HTTP library have in common.
#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/qelnet.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace testsupport {

/// What a completion received.
struct ReceivedAnswer {
  int mStatus = 0;
  std::string mBody;
  std::thread::id mThread;
};

/// Collects answers in the order of their arrival. Any thread may call.
class ReceivedAnswers {
 public:
  void Add(const qelnet::Response& response);

  /// Waits until there are that many, and returns all.
  [[nodiscard]] std::vector<ReceivedAnswer> WaitFor(std::size_t count);

  /// All that there are.
  [[nodiscard]] std::vector<ReceivedAnswer> Now();

 private:
  std::mutex mMutex;
  std::condition_variable mChanged;
  std::vector<ReceivedAnswer> mAnswers;
};

/// Keeps the proxies and the settings of the machine out, records what is traced and logged, and ends the
/// library at the end.
class NetTest : public testing::Test {
 protected:
  NetTest();
  ~NetTest() override;

  /// Asks for an address; what comes goes to `mAnswers`. Returns what `GET` returned.
  [[nodiscard]] bool Get(const std::string& url, const qelnet::Headers& headers = {}) const;

  /// Asks for an address and waits for the only answer so far; fails the test when it is refused.
  [[nodiscard]] ReceivedAnswer Fetch(const std::string& url, const qelnet::Headers& headers = {}) const;

  /// The texts that were traced on the channel "qelnet" at level 5, from "Failed: " or "Refused: " on.
  [[nodiscard]] std::vector<std::string> Warnings();

  /// The contexts under which exceptions were logged.
  [[nodiscard]] std::vector<std::string> ExceptionContexts();

  std::shared_ptr<ReceivedAnswers> mAnswers = std::make_shared<ReceivedAnswers>();
  TemporaryDirectory mDirectory;

 private:
  std::deque<EnvironmentVariable> mProxies;
  std::mutex mMutex;
  std::vector<std::string> mWarnings;
  std::vector<std::string> mExceptionContexts;
};

/// `GET` with a fresh identifier.
[[nodiscard]] bool Get(const std::string& url, qelnet::Completion completion,
                       const qelnet::Headers& headers = {});

}  // namespace testsupport
