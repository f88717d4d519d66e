// The HTTP library's own interface: what an application or a test sets up. Process-wide; any thread may call.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "platform/qelnet.h"

namespace qelnet::host {

/// The debug setting for the largest body in bytes: decimal digits; any other text counts as the usual limit.
/// A number below the lowest limit counts as that, and one above the highest as that. It is read with each
/// `GET`.
inline constexpr std::string_view kLargestDownloadSetting = "host.largest_download_bytes";
inline constexpr std::size_t kUsualDownloadLimit = 67'108'864;    ///< 64 MiB
inline constexpr std::size_t kLowestDownloadLimit = 1'024;        ///< 1 KiB
inline constexpr std::size_t kHighestDownloadLimit = 67'108'864;  ///< 64 MiB, the most that is ever read

/// How requests are made. Time-outs below 1 ms count as 1 ms, and those above a day as a day.
struct Options {
  /// From the start of a connection until it is ready for the request: resolving, connecting, a proxy and
  /// TLS.
  std::chrono::milliseconds mConnectTimeout{30'000};

  /// The longest time, once the request is sent, without a header line or a byte of the body.
  std::chrono::milliseconds mStallTimeout{60'000};

  /// The longest time of a whole request, redirects included: a server can send a byte a minute for ever.
  std::chrono::milliseconds mTotalTimeout{3'600'000};

  /// The largest body, in bytes. The smaller of this and `kLargestDownloadSetting` holds; the setting alone
  /// as long as `SetOptions` has not been called.
  std::size_t mLargestBody{kUsualDownloadLimit};

  /// A PEM file of certificate authorities, as a UTF-8 path, that stands for the system's store. Empty means
  /// the system's store.
  std::string mCertificateAuthorities{};
};

/// Sets the options of the requests that start from now on. Those in flight keep theirs.
QELNET_EXPORT void SetOptions(const Options& options);

/// How a request ended, or why it was refused.
struct Outcome {
  std::string mUrl;        ///< where it was last sent, without user, password and query; empty when malformed
  int mStatus = 0;         ///< the answer's; 0 when no whole answer came
  std::string mFailure{};  ///< why no whole answer came, in a sentence; empty when one did
};

using OutcomeObserver = std::function<void(const Outcome& outcome)>;

/// Sees how every request ends, just before its completion is called and on the same thread, and every
/// refusal, on the thread that asked. An empty function takes the observer away.
QELNET_EXPORT void SetOutcomeObserver(OutcomeObserver observer);

/// Ends the library for the rest of the process: requests in flight complete at once with status 0, and `GET`
/// refuses every further one. No completion is called after it returned, and none was forgotten. It waits for
/// a completion that is running, so a caller must not hold a lock that a completion takes; called from within
/// a completion it does not wait for that one. The first `GET` registers it as a termination action, so it
/// need not be called where the host's `EndProcess` is.
QELNET_EXPORT void Shutdown();

}  // namespace qelnet::host
