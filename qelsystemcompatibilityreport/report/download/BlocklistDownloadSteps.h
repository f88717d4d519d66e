// The steps of a download, one after the other.
#pragma once

#include <string>

#include "platform/qelnet.h"
#include "qelsystemcompatibilityreport/BlocklistDownload.h"

namespace qelsystemcompatibilityreport {

/// Issues the request, on the main thread. Returns `DownloadRequested` when the callback will be called
/// later, else the result that the callback, if there is one, was called with. Does not throw.
DownloadResult DownloadBlocklistNow(const std::string& url, const DownloadCallback& callback);

/// Verifies and stores what the server answered, on the HTTP library's thread, then calls the callback if
/// there is one. Does not throw.
void OnBlocklistDownloaded(const qelnet::Response& response, const DownloadCallback& callback);

}  // namespace qelsystemcompatibilityreport
