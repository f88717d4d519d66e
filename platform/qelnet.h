// What the library asks of the host's HTTP library: one asynchronous GET, by which a newer blocklist is
// fetched.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Text.h"

#if defined(_WIN32)
#if defined(QELNET_BUILDING)
#define QELNET_EXPORT __declspec(dllexport)
#else
#define QELNET_EXPORT __declspec(dllimport)
#endif
#else
#define QELNET_EXPORT __attribute__((visibility("default")))
#endif

namespace qelnet {

/// What a server answered. It lives as long as the call of the completion that receives it.
class QELNET_EXPORT Response {
 public:
  virtual ~Response();

  /// The HTTP status, such as 200; 0 when no whole answer came.
  [[nodiscard]] virtual int GetStatus() const = 0;

  /// The body, empty when the status is 0. Bytes that are no UTF-8 come as they are.
  [[nodiscard]] virtual std::string GetPayloadAsUTF8String() const = 0;
};

/// How a request is made. A default-constructed one is the host's usual way.
struct Configuration {};

using Headers = std::multimap<std::string, std::string>;
using Completion = std::function<void(const Response& response)>;

/// Starts a request and returns at once. `identifier` names it in the host's log. Returns false when the
/// request is refused: for an address that is malformed or of a scheme other than http and https, for headers
/// that HTTP does not allow, and once the host is ending; `completion` is then never called. Else it is
/// called once, on the library's own thread, whatever becomes of the request; what it throws is logged. It
/// may start another request. Requests wait while it runs. Any thread may call. Does not throw.
[[nodiscard]] QELNET_EXPORT bool GET(const qelcore::Guid& identifier, Completion completion,
                                     const qelcore::ImmutableString& url, const Headers& headers,
                                     const Configuration& configuration);

}  // namespace qelnet
