#include "tests/host/qelnet/NetTest.h"

#include <csignal>
#include <exception>
#include <string_view>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"

namespace testsupport {

void ReceivedAnswers::Add(const qelnet::Response& response) {
  const std::lock_guard lock(mMutex);
  mAnswers.push_back({response.GetStatus(), response.GetPayloadAsUTF8String(), std::this_thread::get_id()});
  mChanged.notify_all();
}

std::vector<ReceivedAnswer> ReceivedAnswers::WaitFor(std::size_t count) {
  std::unique_lock lock(mMutex);
  mChanged.wait(lock, [&] { return mAnswers.size() >= count; });
  return mAnswers;
}

std::vector<ReceivedAnswer> ReceivedAnswers::Now() {
  const std::lock_guard lock(mMutex);
  return mAnswers;
}

NetTest::NetTest() {
#if defined(SIGPIPE)
  // Whatever the process inherited: a connection that breaks off must not raise it.
  std::signal(SIGPIPE, SIG_DFL);
#endif
  for (const char* const name :
       {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
    mProxies.emplace_back(name, std::nullopt);
  }
  qelcore::host::SetDirectories({.mPreferences = (mDirectory.Path() / "preferences").string()});
  qelcore::host::SetTraceLevel(6);
  qelcore::host::SetTraceSink([this](std::string_view channel, int level, std::string_view text) {
    const std::lock_guard lock(mMutex);
    // "GET ", the identifier's 36 characters and ": " come first.
    if (channel == "qelnet" && level == 5) mWarnings.emplace_back(text.substr(42));
  });
  qelcore::host::SetExceptionSink([this](const std::exception_ptr& /*exception*/, std::string_view context) {
    const std::lock_guard lock(mMutex);
    mExceptionContexts.emplace_back(context);
  });
}

NetTest::~NetTest() {
  qelnet::host::Shutdown();
  qelcore::host::SetTraceLevel(0);
  qelcore::host::SetTraceSink({});
  qelcore::host::SetExceptionSink({});
}

bool NetTest::Get(const std::string& url, const qelnet::Headers& headers) const {
  return testsupport::Get(
      url, [answers = mAnswers](const qelnet::Response& response) { answers->Add(response); }, headers);
}

ReceivedAnswer NetTest::Fetch(const std::string& url, const qelnet::Headers& headers) const {
  const bool isAccepted = Get(url, headers);
  EXPECT_TRUE(isAccepted) << url;
  if (!isAccepted) return {};
  const std::vector<ReceivedAnswer> answers = mAnswers->WaitFor(1);
  EXPECT_EQ(answers.size(), 1U);
  return answers.front();
}

std::vector<std::string> NetTest::Warnings() {
  const std::lock_guard lock(mMutex);
  return mWarnings;
}

std::vector<std::string> NetTest::ExceptionContexts() {
  const std::lock_guard lock(mMutex);
  return mExceptionContexts;
}

bool Get(const std::string& url, qelnet::Completion completion, const qelnet::Headers& headers) {
  return qelnet::GET(qelcore::Guid::CreateUnique(), std::move(completion), qelcore::ImmutableString(url),
                     headers, qelnet::Configuration{});
}

}  // namespace testsupport
