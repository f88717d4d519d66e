// What the library of the requests exports.
#include "host/qelnet/Requests.h"

extern "C" QELNET_EXPORT qelnet::Requests* qelnet_requests_Get() {
  return &qelnet::CurlRequests();
}
