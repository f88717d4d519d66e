#include <exception>
#include <string>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "host/qelnet/HostSetup.h"
#include "host/qelnet/Outcomes.h"
#include "host/qelnet/Requests.h"
#include "platform/qelcore/Trace.h"
#include "platform/qelnet.h"

namespace qelnet {

bool GET(const qelcore::Guid& identifier, Completion completion, const qelcore::ImmutableString& url,
         const Headers& headers, const Configuration& /*configuration*/) {
  try {
    return TheRequests().Start(identifier, std::move(completion), std::string(url.View()), headers);
  } catch (...) {
    const std::exception_ptr exception = std::current_exception();
    qelcore::LogException(exception, "qelnet::GET");
    // The address may hold a password, and is not taken apart here.
    TellOutcome(
        [&] { return host::Outcome{.mUrl = {}, .mFailure = qelcore::host::DescribeException(exception)}; });
    return false;
  }
}

void host::Shutdown() {
  try {
    TheRequests().Shutdown();
  } catch (...) {
    // Without the library of the requests there are none, and there will be none.
    qelcore::LogException(std::current_exception(), "qelnet::host::Shutdown");
  }
}

}  // namespace qelnet
