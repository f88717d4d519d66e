// What is asked for.
#pragma once

#include "host/qelnet/HostSetup.h"
#include "host/qelnet/Url.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelnet.h"

namespace qelnet {

/// One call of `GET`. Redirects change where it goes.
struct Request {
  qelcore::Guid mIdentifier;
  Completion mCompletion;
  Url mUrl;
  Headers mHeaders;
  host::Options mOptions;
  int mRedirects = 0;  ///< followed so far
};

}  // namespace qelnet
