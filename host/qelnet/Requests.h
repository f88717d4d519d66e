// What this library and the one that serves requests say to each other. That one brings libcurl and all that
// libcurl needs, which takes a process several times as long to load as everything else together; most never
// make a request.
#pragma once

#include <string>

#include "platform/qelcore/Guid.h"
#include "platform/qelnet.h"

namespace qelnet {

class Requests {
 public:
  Requests() = default;
  virtual ~Requests() = default;
  Requests(const Requests&) = delete;
  Requests& operator=(const Requests&) = delete;

  /// As `GET`, but may throw.
  [[nodiscard]] virtual bool Start(const qelcore::Guid& identifier, Completion completion,
                                   const std::string& url, const Headers& headers) = 0;

  /// As `host::Shutdown`.
  virtual void Shutdown() = 0;
};

/// The process's requests, which are never destroyed. Where they stand in a library of their own it is loaded
/// by the first call; throws `std::runtime_error` when that fails. Any thread may call.
[[nodiscard]] Requests& TheRequests();

/// The requests, where libcurl is.
[[nodiscard]] Requests& CurlRequests();

/// The one function that the library of the requests exports: the address of `CurlRequests`.
using RequestsFunction = Requests* (*)();

inline constexpr const char* kRequestsFunction = "qelnet_requests_Get";

}  // namespace qelnet
