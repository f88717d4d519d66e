// Whether the system trusts a server, where the library that encrypts may leave the question to its user.
#pragma once

#include <curl/curl.h>

namespace qelnet {

/// Asks the system about the certificate of the server that the handle has just made an encrypted connection
/// to, and about its name. To be called in the callback before the first request on the connection.
#if defined(_WIN32)
[[nodiscard]] bool IsServerTrusted(CURL* handle) noexcept;
#else
[[nodiscard]] inline bool IsServerTrusted(CURL* /*handle*/) noexcept {
  // libcurl has asked already.
  return true;
}
#endif

}  // namespace qelnet
