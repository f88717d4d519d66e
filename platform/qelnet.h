// What the library asks of the host's HTTP library: one asynchronous GET, by which a newer blocklist is
// fetched. Nothing is fetched yet, and the reference host has no library for it yet.
#pragma once

#include <functional>
#include <map>
#include <memory>
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

/// What a server answered. It belongs to the completion that receives it.
class QELNET_EXPORT Response {
 public:
  virtual ~Response();

  /// The HTTP status, such as 200; 0 when no answer came.
  [[nodiscard]] virtual int GetStatus() const = 0;

  /// The body. Bytes that are no UTF-8 come as they are.
  [[nodiscard]] virtual std::string GetPayloadAsUTF8String() const = 0;
};

/// How a request is made. A default-constructed one is the host's usual way.
struct Configuration {};

using Headers = std::multimap<std::string, std::string>;
using Completion = std::function<void(const Response& response)>;

/// Starts a request and returns at once. `identifier` names it in the host's log. Returns false when the
/// request is refused, as for a scheme other than http and https; `completion` is then never called. Else it
/// is called once, on the library's own thread, whatever becomes of the request. Any thread may call. Does
/// not throw.
[[nodiscard]] QELNET_EXPORT bool GET(const qelcore::Guid& identifier, Completion completion,
                                     const qelcore::ImmutableString& url, const Headers& headers,
                                     const Configuration& configuration);

}  // namespace qelnet
