// What a server answers to the request for a blocklist, from the bytes on the connection to the stored file.
//
// The input is the answer to each request, one after the other with a line "--next--" between them; the last
// one goes on answering. A server of this process stands for all: every request goes to it as to a proxy,
// wherever a redirect leads.
#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistDownloadSteps.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/network/LoopbackServer.h"

namespace {

using fuzz::Require;
using qelsystemcompatibilityreport::DownloadResult;

constexpr std::string_view kStoredBefore = "what was stored before";

std::vector<std::string> SplitAnswers(std::string text) {
  constexpr std::string_view kBetween = "\n--next--\n";
  std::vector<std::string> answers;
  for (std::size_t end = text.find(kBetween); end != std::string::npos; end = text.find(kBetween)) {
    answers.push_back(text.substr(0, end));
    text.erase(0, end + kBetween.size());
  }
  answers.push_back(std::move(text));
  return answers;
}

/// The server, and what came of the request that is under way.
class Exchange {
 public:
  Exchange()
      : mServer([this](testsupport::ServerConnection& connection) {
          if (!connection.ReadRequest().empty()) connection.Write(NextAnswer());
        }) {
    const std::string address = mServer.Url("");
    for (const char* const name : {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"}) {
      mProxies.push_back(std::make_unique<testsupport::EnvironmentVariable>(name, address));
    }
    for (const char* const name : {"no_proxy", "NO_PROXY"}) {
      mProxies.push_back(std::make_unique<testsupport::EnvironmentVariable>(name, ""));
    }
    qelnet::host::SetOptions({.mConnectTimeout = std::chrono::seconds(5),
                              .mStallTimeout = std::chrono::seconds(5),
                              .mLargestBody = 65'536});
    qelnet::host::SetOutcomeObserver([this](const qelnet::host::Outcome& outcome) {
      const std::lock_guard lock(mMutex);
      mOutcome = outcome;
    });
  }

  DownloadResult Download(std::vector<std::string> answers) {
    {
      const std::lock_guard lock(mMutex);
      mAnswers = std::move(answers);
      mRequests = 0;
      mResults.clear();
    }
    const DownloadResult begun = qelsystemcompatibilityreport::DownloadBlocklistNow(
        "http://lists.example/blocklist.json", [this](DownloadResult result) {
          const std::lock_guard lock(mMutex);
          mResults.push_back(result);
          mEnded.notify_all();
        });
    Require(begun == DownloadResult::DownloadRequested, "a request can be made");
    std::unique_lock lock(mMutex);
    mEnded.wait(lock, [this] { return !mResults.empty(); });
    Require(mResults.size() == 1, "a download ends once");
    Require(mRequests <= 11, "at most ten redirects are followed");
    return mResults.front();
  }

  [[nodiscard]] qelnet::host::Outcome GetOutcome() {
    const std::lock_guard lock(mMutex);
    return mOutcome;
  }

 private:
  std::string NextAnswer() {
    const std::lock_guard lock(mMutex);
    const std::size_t number = mRequests++;
    return mAnswers[std::min(number, mAnswers.size() - 1)];
  }

  std::mutex mMutex;
  std::condition_variable mEnded;
  std::vector<std::string> mAnswers;
  std::size_t mRequests = 0;
  std::vector<DownloadResult> mResults;
  qelnet::host::Outcome mOutcome;
  std::vector<std::unique_ptr<testsupport::EnvironmentVariable>> mProxies;
  testsupport::LoopbackServer mServer;
};

/// The process's exchange, ended with the libraries.
Exchange& TheExchange() {
  // Never destroyed, because the library's thread may still call while the process ends.
  static Exchange& exchange = *new Exchange;
  static const bool isEnded = std::atexit([] { qelnet::host::Shutdown(); }) == 0;
  Require(isEnded, "the library can be ended");
  return exchange;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost::Instance();
  const std::filesystem::path stored = [] {
    const auto file = qelsystemcompatibilityreport::GetDownloadBlocklistFileLocation();
    const std::string path = qelcore::string::UTF16to8(file.GetFullPath());
    return std::filesystem::path(std::u8string(path.begin(), path.end()));
  }();
  fuzz::WriteFile(stored, kStoredBefore);

  const DownloadResult result = TheExchange().Download(SplitAnswers(std::string(data, data + size)));
  const qelnet::host::Outcome outcome = TheExchange().GetOutcome();
  Require((outcome.mStatus == 0) == !outcome.mFailure.empty(), "there is a whole answer or a reason");
  Require(outcome.mStatus >= 0 && outcome.mStatus <= 999, "a status has three digits");
  const std::string content = fuzz::ReadFile(stored);
  if (result == DownloadResult::DownloadSucceeded) {
    Require(outcome.mStatus == 200, "only a success is stored");
    Require(qelsystemcompatibilityreport::SCRBlocklist(content).Verify(), "what is stored verifies");
  } else {
    Require(result == DownloadResult::DownloadHttpError || result == DownloadResult::DownloadCorrupted,
            "a failure is the server's or the document's");
    Require((result == DownloadResult::DownloadHttpError) == (outcome.mStatus != 200),
            "every other status is an error");
    Require(content == kStoredBefore, "what fails leaves the stored blocklist as it was");
  }
  return 0;
}
