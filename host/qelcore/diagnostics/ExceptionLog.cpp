#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Trace.h"

namespace qelcore {

namespace {

constexpr std::string_view kChannel = "Exceptions";
constexpr int kErrorLevel = 1;

using ExceptionSink = std::function<void(const std::exception_ptr&, std::string_view)>;

struct SinkHolder {
  std::mutex mMutex;
  std::shared_ptr<const ExceptionSink> mSink;
};

SinkHolder& TheSink() {
  // Never destroyed, because static objects of other libraries may log while the process ends.
  static SinkHolder& holder = *new SinkHolder;
  return holder;
}

}  // namespace

void LogException(const std::exception_ptr& exception, std::string_view context) {
  try {
    if (TraceEnabled(kChannel, kErrorLevel)) {
      TraceOutput(kChannel, kErrorLevel, std::string(context) + ": " + host::DescribeException(exception));
    }
    std::shared_ptr<const ExceptionSink> sink;
    {
      SinkHolder& holder = TheSink();
      const std::lock_guard lock(holder.mMutex);
      sink = holder.mSink;
    }
    if (sink) {
      (*sink)(exception, context);
    }
  } catch (...) {
    // Whoever logs an exception is already handling one failure and must not meet a second.
    return;
  }
}

namespace host {

void SetExceptionSink(ExceptionSink sink) {
  SinkHolder& holder = TheSink();
  const std::lock_guard lock(holder.mMutex);
  holder.mSink = sink ? std::make_shared<const ExceptionSink>(std::move(sink)) : nullptr;
}

std::string DescribeException(const std::exception_ptr& exception) {
  constexpr const char* kUnknown = "unknown exception";
  if (!exception) {
    return kUnknown;
  }
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& known) {
    return known.what();
  } catch (...) {
    return kUnknown;
  }
}

}  // namespace host
}  // namespace qelcore
