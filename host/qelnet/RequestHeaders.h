// The headers of a request, as they go to the server.
#pragma once

#include "host/qelnet/CurlHandles.h"
#include "platform/qelnet.h"

namespace qelnet {

/// Whether the headers can be sent as they are: names that HTTP allows, and values on one line.
[[nodiscard]] bool CanBeSent(const Headers& headers);

/// The headers in libcurl's form, null when there are none. They must be such as can be sent.
[[nodiscard]] HeaderList MakeHeaderList(const Headers& headers);

/// Takes away what belongs to the server that was asked first and must not reach another one: credentials and
/// the server's name.
void RemoveHeadersOfOneServer(Headers& headers);

}  // namespace qelnet
