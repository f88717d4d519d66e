#include "host/qelnet/Tracing.h"

#include <exception>
#include <string_view>

#include "platform/qelcore/Trace.h"

namespace qelnet {

namespace {

constexpr std::string_view kChannel = "qelnet";

}  // namespace

void TraceRequest(int level, const qelcore::Guid& identifier, const std::function<std::string()>& makeText) {
  if (!qelcore::TraceEnabled(kChannel, level)) return;
  try {
    qelcore::TraceOutput(kChannel, level, "GET " + identifier.AsUTF8String() + ": " + makeText());
  } catch (const std::exception&) {
    // Tracing must never be the reason why a request is not completed.
    return;
  }
}

}  // namespace qelnet
