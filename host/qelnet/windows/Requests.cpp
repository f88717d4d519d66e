#include "host/qelnet/Requests.h"

namespace qelnet {

// libcurl is a part of this library here, and needs only what the system has loaded anyway.
Requests& TheRequests() {
  return CurlRequests();
}

}  // namespace qelnet
