#include "host/qelnet/CurlHandles.h"

#include <stdexcept>

#include "host/qelnet/StayLoaded.h"

namespace qelnet {

void PrepareCurl() {
  // Never undone: a name that is still being looked up keeps its thread beyond the end of the worker.
  StayLoaded();
  static const CURLcode code = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
}

}  // namespace qelnet
