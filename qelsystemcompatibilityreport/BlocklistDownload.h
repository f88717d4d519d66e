// Fetching a newer blocklist.
//
//   using namespace qelsystemcompatibilityreport;
//   const std::string url = GetDownloadBlocklistURL("https://updates.example.com");
//   DownloadBlocklistInTheBackground(url, 0, [](DownloadResult result) { ... });
//
// Nothing is fetched unless a host asks for it. The next run reads the new file.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

/// What became of a download. The numbers are reported: do not renumber. -2 is not in use.
enum class DownloadResult : std::int32_t {
  DownloadRequested = 1,       ///< the request is under way; a callback never sees this
  DownloadSucceeded = 0,       ///< the blocklist was verified and stored
  DownloadRequestFailed = -1,  ///< the HTTP library refused to start the request
  DownloadHttpError = -3,      ///< the answer's status was not 200, as when there is nothing newer
  DownloadCorrupted = -4,      ///< the answer is no complete blocklist; the old one stays
  DownloadNoLocation = -5,  ///< there is no place to store it, or it could not be stored; the old one stays
  DownloadNoURL = -6,       ///< the URL is empty
  DownloadReportsDisabled = -7,  ///< the service is off
};

using DownloadCallback = std::function<void(DownloadResult result)>;

/// The URL below the server root `base` at which the blocklist for this application's version and language is
/// found, such as base + "/systemcompatibilityreport/7.3/win/blocklist.en_US.json". Empty when downloads are
/// out of the question: a test file is in use, or the preferences directory cannot be used. UTF-8. Main
/// thread. Does not throw.
[[nodiscard]] QELSCR_EXPORT std::string GetDownloadBlocklistURL(const std::string& base);

/// Fetches the blocklist at `url` after `delayMs` milliseconds, checks that it is complete, and stores it.
/// With 0 the delay is the debug setting "qelsystemcompatibilityreport.download_delay_secs", 10 seconds
/// unless set. Returns at once. `callback` may be empty; it is called at most once, on the main thread or on
/// the HTTP library's; never for an empty URL, and not when the host ends before the delay is over. Main
/// thread. Does not throw.
QELSCR_EXPORT void DownloadBlocklistInTheBackground(const std::string& url, std::uint32_t delayMs,
                                                    DownloadCallback callback);

}  // namespace qelsystemcompatibilityreport
