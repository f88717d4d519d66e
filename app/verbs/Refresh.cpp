// `scr refresh`: fetch a newer blocklist.
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"

namespace app {

namespace host = qelcore::host;
using qelsystemcompatibilityreport::DownloadResult;

namespace {

struct Arguments {
  std::string mBase;
  bool mNow = false;
};

/// A line on the terminal that changes while somebody waits; nothing where standard error is no terminal.
class ProgressLine {
 public:
  ProgressLine() : mIsShown(host::IsStandardErrorATerminal()) {}

  [[nodiscard]] bool IsShown() const { return mIsShown; }

  void Show(const std::string& text) {
    if (!mIsShown) return;
    // Back to the beginning, and clear what stood there.
    const std::string line = "\r\x1b[K" + text;
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
  }

 private:
  bool mIsShown;
};

/// What came of the download. Both come from the HTTP library's thread.
class Outcome {
 public:
  void Set(DownloadResult result) {
    {
      const std::lock_guard lock(mMutex);
      mResult = result;
    }
    host::WakeMainThread();
  }
  void Set(const qelnet::host::Outcome& request) {
    const std::lock_guard lock(mMutex);
    mRequest = request;
  }

  [[nodiscard]] std::optional<DownloadResult> Result() const {
    const std::lock_guard lock(mMutex);
    return mResult;
  }
  [[nodiscard]] qelnet::host::Outcome Request() const {
    const std::lock_guard lock(mMutex);
    return mRequest;
  }

 private:
  mutable std::mutex mMutex;
  std::optional<DownloadResult> mResult;
  qelnet::host::Outcome mRequest;
};

constexpr std::uint32_t kTickMilliseconds = 1000;

/// Says what goes on, once a second, until the result is there. `seconds` is the time until the download
/// begins, and negative once it has begun.
void ShowProgress(ProgressLine line, const std::shared_ptr<Outcome>& outcome, long seconds) {
  if (outcome->Result()) return;
  line.Show(seconds > 0 ? fmt::format("the download begins in {} s", seconds)
                        : fmt::format("fetching the blocklist ... {} s", -seconds));
  qelcore::threads::AsyncCallFromMainThread([=] { ShowProgress(line, outcome, seconds - 1); },
                                            kTickMilliseconds);
}

/// How long the setting makes a download wait.
long DelaySeconds() {
  const auto& setting = qelsystemcompatibilityreport::kDownloadDelaySeconds;
  return std::strtol(qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue).c_str(),
                     nullptr, 10);
}

std::string DescribeHttpError(const std::string& url, const qelnet::host::Outcome& request) {
  if (request.mStatus == 304 || request.mStatus == 404) {
    return fmt::format("{}: the server has no newer blocklist (status {}); the old one stays", url,
                       request.mStatus);
  }
  if (request.mStatus != 0) {
    return fmt::format("{}: the server answered with status {}; the old blocklist stays, try again later",
                       url, request.mStatus);
  }
  std::string reason = request.mFailure;
  while (reason.ends_with('.')) reason.pop_back();
  return fmt::format("{}: there was no whole answer: {}; the old blocklist stays", url, reason);
}

/// What the result means, and what to do about it.
std::string Describe(DownloadResult result, const std::string& url, const qelnet::host::Outcome& request,
                     const Diagnostics& diagnostics) {
  switch (result) {
    case DownloadResult::DownloadSucceeded:
      return url + ": the blocklist was fetched, verified and stored; the next report reads it";
    case DownloadResult::DownloadHttpError:
      return DescribeHttpError(url, request);
    case DownloadResult::DownloadCorrupted:
      return url +
             ": the server sent something that is no complete blocklist; the old one stays. Is the address "
             "right?";
    case DownloadResult::DownloadNoLocation:
      return url + ": the blocklist could not be stored; the old one stays: " + diagnostics.Summary();
    case DownloadResult::DownloadRequestFailed:
      return url + ": not an address that can be asked: " + request.mFailure;
    case DownloadResult::DownloadNoURL:
      return "there is no address to ask";
    case DownloadResult::DownloadReportsDisabled:
      return "the report service is switched off, so nothing is fetched";
    case DownloadResult::DownloadRequested:
      break;
  }
  return url + ": nothing is known about the download";
}

void CheckBase(const std::string& base) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (base.starts_with(scheme) && base.size() > scheme.size() && base[scheme.size()] != '/') return;
  }
  throw UserError("--base " + base +
                  ": not an address of a server; write it like https://updates.example.com");
}

std::string DeriveUrl(const std::string& base, const Diagnostics& diagnostics) {
  std::string url = qelsystemcompatibilityreport::GetDownloadBlocklistURL(base);
  if (!url.empty()) return url;
  if (!diagnostics.Problems().empty())
    throw UserError("there is no place for a downloaded blocklist: " + diagnostics.Summary());
  throw UserError(
      "nothing is fetched while the preferences directory has a test file, "
      "SystemCompatibilityReport/test/blocklist.json");
}

/// Fetches, and returns when the result is there.
void Refresh(const Arguments& arguments) {
  CheckBase(arguments.mBase);
  const Diagnostics diagnostics;
  const std::string url = DeriveUrl(arguments.mBase, diagnostics);
  const auto outcome = std::make_shared<Outcome>();
  qelnet::host::SetOutcomeObserver(
      [outcome](const qelnet::host::Outcome& request) { outcome->Set(request); });
  // No delay means the setting's, so that "now" is the shortest there is.
  qelsystemcompatibilityreport::DownloadBlocklistInTheBackground(
      url, arguments.mNow ? 1 : 0, [outcome](DownloadResult result) { outcome->Set(result); });
  ProgressLine line;
  if (line.IsShown()) ShowProgress(line, outcome, arguments.mNow ? 0 : DelaySeconds());
  host::RunMainThreadUntil([&] { return outcome->Result().has_value(); });
  line.Show({});
  const DownloadResult result = *outcome->Result();
  const std::string text = Describe(result, url, outcome->Request(), diagnostics);
  if (result != DownloadResult::DownloadSucceeded) throw UserError(text);
  Print(text + "\n");
  diagnostics.PrintProblems();
}

}  // namespace

void AddRefreshVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("refresh", "Fetch a newer blocklist from a server");
  verb->group("Verbs")->footer(
      "Fetches the blocklist of the application's version and language from below a server's address, "
      "checks\n"
      "that it is complete, and stores it; the next report reads it. It waits first, as it does in the\n"
      "background of an application; the setting qelsystemcompatibilityreport.download_delay_secs says how "
      "long.\n"
      "\n"
      "  scr refresh --base https://updates.example.com          asks for\n"
      "      https://updates.example.com/systemcompatibilityreport/1.0/win/blocklist.en_US.json\n"
      "  scr refresh --base https://updates.example.com --now    does not wait\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_option("--base", arguments->mBase, "Address that the lists are below, http or https")
      ->option_text("URL")
      ->required();
  verb->add_flag("--now", arguments->mNow, "Do not wait first");
  verb->callback([arguments] { Refresh(*arguments); });
}

}  // namespace app
