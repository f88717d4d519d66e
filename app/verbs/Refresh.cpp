// `scr refresh`: fetch a newer blocklist.
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>

#include "app/Diagnostics.h"
#include "app/Download.h"
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

constexpr std::uint32_t kTickMilliseconds = 1000;

/// Says what goes on, once a second, until the result is there. `seconds` is the time until the download
/// begins, and negative once it has begun.
void ShowProgress(ProgressLine line, const std::shared_ptr<DownloadOutcome>& outcome, long seconds) {
  if (outcome->Result()) return;
  line.Show(seconds > 0 ? fmt::format("the download begins in {} s", seconds)
                        : fmt::format("fetching the blocklist ... {} s", -seconds));
  qelcore::threads::AsyncCallFromMainThread([=] { ShowProgress(line, outcome, seconds - 1); },
                                            kTickMilliseconds);
}

/// How long the setting makes a download wait, read as the library reads it.
std::uint32_t DelayMilliseconds() {
  const auto& setting = qelsystemcompatibilityreport::kDownloadDelaySeconds;
  const std::string text = qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue);
  constexpr std::uint32_t kLongest = std::numeric_limits<std::uint32_t>::max();
  const unsigned long seconds = std::strtoul(text.c_str(), nullptr, 10);
  return seconds > kLongest / kTickMilliseconds ? kLongest
                                                : static_cast<std::uint32_t>(seconds) * kTickMilliseconds;
}

/// Fetches, and returns when the result is there.
void Refresh(const Arguments& arguments) {
  const Diagnostics diagnostics;
  const std::string url = DeriveDownloadUrl(arguments.mBase, diagnostics);
  const auto outcome = std::make_shared<DownloadOutcome>();
  qelnet::host::SetOutcomeObserver(
      [outcome](const qelnet::host::Outcome& request) { outcome->Set(request); });
  // A delay of 0 would mean the setting's.
  const std::uint32_t delay = arguments.mNow ? 1 : std::max(DelayMilliseconds(), std::uint32_t{1});
  qelsystemcompatibilityreport::DownloadBlocklistInTheBackground(
      url, delay, [outcome](DownloadResult result) { outcome->Set(result); });
  ProgressLine line;
  if (line.IsShown()) ShowProgress(line, outcome, delay / kTickMilliseconds);
  host::RunMainThreadUntil([&] { return outcome->Result().has_value(); });
  line.Show({});
  const DownloadResult result = *outcome->Result();
  const std::string text = DescribeDownload(result, url, outcome->Request(), diagnostics);
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
