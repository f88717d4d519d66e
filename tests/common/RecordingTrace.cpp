#include "tests/common/RecordingTrace.h"

#include <exception>

#include "platform/qelcore/Trace.h"

namespace testsupport {

RecordingTrace& RecordingTrace::Instance() {
  static RecordingTrace trace;
  return trace;
}

}  // namespace testsupport

namespace qelcore {

namespace {

testsupport::RecordingTrace& TheTrace() {
  return testsupport::RecordingTrace::Instance();
}

std::string Place(std::string_view channel, int level) {
  return std::string(channel) + ' ' + std::to_string(level);
}

}  // namespace

bool TraceEnabled(std::string_view channel, int level) {
  TheTrace().mQuestioned.push_back(Place(channel, level));
  return TheTrace().mIsEnabled;
}

std::uint32_t TraceChangeCount() {
  return TheTrace().mChangeCount;
}

void TraceOutput(std::string_view channel, int level, std::string_view text) {
  TheTrace().mOutput.push_back(Place(channel, level) + ' ' + std::string(text));
}

void LogException(const std::exception_ptr& exception, std::string_view context) {
  std::string what = "unknown";
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& known) {
    what = known.what();
  } catch (...) {
    // It stays unknown.
  }
  TheTrace().mLogged.push_back(std::string(context) + ": " + what);
}

}  // namespace qelcore
