#include "qelsystemcompatibilityreport/common/TraceSite.h"

#include "platform/qelcore/Trace.h"

namespace qelsystemcompatibilityreport {

namespace {

constexpr std::string_view kChannel = "SystemCompatibilityReport";

}  // namespace

bool TraceSite::IsEnabled() {
  const std::uint64_t count = qelcore::TraceChangeCount();
  std::uint64_t known = mCountAndAnswer.load(std::memory_order_relaxed);
  if (known >> 1 != count) {
    known = count << 1 | (qelcore::TraceEnabled(kChannel, mLevel) ? 1 : 0);
    mCountAndAnswer.exchange(known, std::memory_order_relaxed);
  }
  return (known & 1) != 0;
}

void TraceSite::Output(std::string_view text) const {
  qelcore::TraceOutput(kChannel, mLevel, text);
}

}  // namespace qelsystemcompatibilityreport
