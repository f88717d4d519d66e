#include "qelsystemcompatibilityreport/BlocklistDownload.h"

#include <cstdlib>
#include <limits>
#include <utility>

#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "platform/qelcore/Threads.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/TraceSite.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistDownloadSteps.h"
#include "qelsystemcompatibilityreport/report/download/BlocklistLocations.h"

namespace qelsystemcompatibilityreport {

namespace {

constexpr std::uint32_t kMillisecondsPerSecond = 1000;
constexpr int kSuccessStatus = 200;

/// The delay setting in milliseconds. Text that is no number gives 0; a number that is too large gives the
/// largest.
std::uint32_t DelaySetting() {
  const std::string text = qelcore::DebugDatabase::Instance().GetEntry(kDownloadDelaySeconds.mKey,
                                                                       kDownloadDelaySeconds.mDefaultValue);
  const unsigned long seconds = std::strtoul(text.c_str(), nullptr, 10);
  constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();
  return seconds > kLargest / kMillisecondsPerSecond
             ? kLargest
             : static_cast<std::uint32_t>(seconds) * kMillisecondsPerSecond;
}

/// The delay as the message shows it, with the precision of a single.
std::string InSeconds(std::uint32_t delayMs) {
  qelcore::UTF8StringStream stream;
  stream << static_cast<double>(static_cast<float>(delayMs)) / 1000.0;
  return stream.Text();
}

/// What the host's callback throws is the host's own affair: it is logged.
void Tell(std::string_view context, const DownloadCallback& callback, DownloadResult result) {
  AtBoundary(context, [&] {
    if (callback) callback(result);
  });
}

/// Issues the request, unless there is a reason not to.
DownloadResult Request(const std::string& url, const DownloadCallback& callback) {
  if (!ReportsEnabled()) {
    static TraceSite site(TraceSite::kDetail);
    site.Write([] { return "Download disabled because reports are disabled"; });
    return DownloadResult::DownloadReportsDisabled;
  }
  if (url.empty()) {
    static TraceSite site(TraceSite::kDetail);
    site.Write([] { return "No Download Blocklist URL"; });
    return DownloadResult::DownloadNoURL;
  }
  static TraceSite site(TraceSite::kDetail);
  site.Write([&] { return "Download Blocklist URL: \"" + url + "\""; });
  const bool isStarted = qelnet::GET(
      qelcore::Guid::CreateUnique(),
      [callback](const qelnet::Response& response) { OnBlocklistDownloaded(response, callback); },
      qelcore::ImmutableString(url), qelnet::Headers(), qelnet::Configuration());
  if (!isStarted) {
    static TraceSite failedSite(TraceSite::kDetail);
    failedSite.Write([] { return "Download failed HTTP GET"; });
    return DownloadResult::DownloadRequestFailed;
  }
  return DownloadResult::DownloadRequested;
}

DownloadResult Store(const std::string& body) {
  const qelcore::filesupport::File file = GetDownloadBlocklistFileLocation();
  if (file.GetName().empty()) return DownloadResult::DownloadNoLocation;
  // In one step, so that neither a run that reads at this moment nor a crash meets half a file.
  qelcore::filesupport::SafeSave save(file);
  save.Write(body);
  save.Commit();
  static TraceSite site(TraceSite::kDetail);
  site.Write([&] {
    return "Blocklist download to \"" + qelcore::string::UTF16to8(file.GetFullPath()) + "\" succeeded";
  });
  return DownloadResult::DownloadSucceeded;
}

DownloadResult VerifyAndStore(const qelnet::Response& response) {
  if (response.GetStatus() != kSuccessStatus) {
    static TraceSite site(TraceSite::kDetail);
    site.Write([&] {
      return "System Compatibility Report HTTP GET returned status " + std::to_string(response.GetStatus()) +
             ". Usually no web update since installed version.";
    });
    return DownloadResult::DownloadHttpError;
  }
  const std::string body = response.GetPayloadAsUTF8String();
  if (!SCRBlocklist(body).Verify()) {
    static TraceSite site(TraceSite::kWarning);
    site.Write([] { return "System Compatibility Report downloaded Blocklist appears corrupted."; });
    return DownloadResult::DownloadCorrupted;
  }
  return Store(body);
}

}  // namespace

void DownloadBlocklistInTheBackground(const std::string& url, std::uint32_t delayMs,
                                      DownloadCallback callback) {
  AtBoundary("qelsystemcompatibilityreport::DownloadBlocklistInTheBackground", [&] {
    if (url.empty()) {
      static TraceSite site(TraceSite::kDetail);
      site.Write([] { return "No blocklist URL specified to download in the background"; });
      return;
    }
    if (delayMs == 0) delayMs = DelaySetting();
    static TraceSite site(TraceSite::kDetail);
    site.Write([&] {
      return "Download of blocklist from \"" + url + "\" will begin in " + InSeconds(delayMs) + " seconds";
    });
    qelcore::threads::AsyncCallFromMainThread(
        [url, callback = std::move(callback)] { DownloadBlocklistNow(url, callback); }, delayMs);
  });
}

DownloadResult DownloadBlocklistNow(const std::string& url, const DownloadCallback& callback) {
  constexpr std::string_view kContext = "qelsystemcompatibilityreport::DownloadBlocklistNow";
  const DownloadResult result =
      AtBoundary(kContext, DownloadResult::DownloadRequestFailed, [&] { return Request(url, callback); });
  if (result != DownloadResult::DownloadRequested) Tell(kContext, callback, result);
  return result;
}

void OnBlocklistDownloaded(const qelnet::Response& response, const DownloadCallback& callback) {
  constexpr std::string_view kContext = "qelsystemcompatibilityreport::OnBlocklistDownloaded";
  // What cannot be stored has no place.
  const DownloadResult result =
      AtBoundary(kContext, DownloadResult::DownloadNoLocation, [&] { return VerifyAndStore(response); });
  Tell(kContext, callback, result);
}

}  // namespace qelsystemcompatibilityreport
