#include "app/Download.h"

#include <fmt/format.h>

#include <regex>
#include <string_view>

#include "app/Output.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/DebugDatabase.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"

namespace app {

using qelsystemcompatibilityreport::DownloadResult;

namespace {

constexpr std::size_t kLongestBase = 2000;

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

/// A path is put behind the address, so it must not have a part that comes behind paths.
bool IsServerAddress(const std::string& base) {
  static const std::regex form("https?://[^/?#\\s][^?#\\s]*", std::regex::icase);
  return base.size() < kLongestBase && std::regex_match(base, form);
}

bool IsDownloadIgnored() {
  const auto& setting = qelsystemcompatibilityreport::kUseInstalledBlocklist;
  return qelcore::DebugDatabase::Instance().GetEntry(setting.mKey, setting.mDefaultValue) == "true";
}

}  // namespace

void DownloadOutcome::Set(DownloadResult result) {
  {
    const std::lock_guard lock(mMutex);
    mResult = result;
  }
  qelcore::host::WakeMainThread();
}

void DownloadOutcome::Set(const qelnet::host::Outcome& request) {
  const std::lock_guard lock(mMutex);
  mRequest = request;
}

std::optional<DownloadResult> DownloadOutcome::Result() const {
  const std::lock_guard lock(mMutex);
  return mResult;
}

qelnet::host::Outcome DownloadOutcome::Request() const {
  const std::lock_guard lock(mMutex);
  return mRequest;
}

std::string DeriveDownloadUrl(const std::string& base, const Diagnostics& diagnostics) {
  if (!IsServerAddress(base)) {
    throw UserError("--base " + base.substr(0, kLongestBase) +
                    ": not an address of a server; write it like https://updates.example.com/lists");
  }
  std::string url = qelsystemcompatibilityreport::GetDownloadBlocklistURL(base);
  if (!url.empty()) return url;
  if (!diagnostics.Problems().empty())
    throw UserError("there is no place for a downloaded blocklist: " + diagnostics.Summary());
  throw UserError(
      "nothing is fetched while the preferences directory has a test file, "
      "SystemCompatibilityReport/test/blocklist.json");
}

std::string DescribeDownload(DownloadResult result, const std::string& askedUrl,
                             const qelnet::host::Outcome& request, const Diagnostics& diagnostics) {
  // What the HTTP library names is without a password.
  const std::string& url = request.mUrl.empty() ? askedUrl : request.mUrl;
  switch (result) {
    case DownloadResult::DownloadSucceeded:
      return url + ": the blocklist was fetched, verified and stored; " +
             (IsDownloadIgnored()
                  ? "reports do not read it while " +
                        std::string(qelsystemcompatibilityreport::kUseInstalledBlocklist.mKey) +
                        " is \"true\""
                  : "the next report reads it");
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

}  // namespace app
