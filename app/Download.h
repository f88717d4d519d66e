// A download of the blocklist as users hear of it.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include "app/Diagnostics.h"
#include "host/qelnet/HostSetup.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"

namespace app {

/// What came of a download. Any thread may set it.
class DownloadOutcome {
 public:
  /// Makes the main thread look.
  void Set(qelsystemcompatibilityreport::DownloadResult result);
  void Set(const qelnet::host::Outcome& request);

  /// Nothing before the download has ended.
  [[nodiscard]] std::optional<qelsystemcompatibilityreport::DownloadResult> Result() const;
  [[nodiscard]] qelnet::host::Outcome Request() const;

 private:
  mutable std::mutex mMutex;
  std::optional<qelsystemcompatibilityreport::DownloadResult> mResult;
  qelnet::host::Outcome mRequest;
};

/// The URL of the blocklist below a server's address. Throws `UserError` when the address is none, and when
/// downloads are out of the question.
[[nodiscard]] std::string DeriveDownloadUrl(const std::string& base, const Diagnostics& diagnostics);

/// What the result means and what to do about it, in one sentence.
[[nodiscard]] std::string DescribeDownload(qelsystemcompatibilityreport::DownloadResult result,
                                           const std::string& url, const qelnet::host::Outcome& request,
                                           const Diagnostics& diagnostics);

}  // namespace app
