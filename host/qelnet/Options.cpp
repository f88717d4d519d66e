#include "host/qelnet/Options.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace qelnet {

namespace {

constexpr std::chrono::milliseconds kShortestTimeout{1};
constexpr std::chrono::milliseconds kLongestTimeout = std::chrono::hours(24);

struct OptionsHolder {
  std::mutex mMutex;
  host::Options mOptions;
};

OptionsHolder& TheOptions() {
  // Never destroyed, because static objects of other libraries may still ask for something at the end.
  static OptionsHolder& holder = *new OptionsHolder;
  return holder;
}

}  // namespace

host::Options CurrentOptions() {
  OptionsHolder& holder = TheOptions();
  const std::lock_guard lock(holder.mMutex);
  return holder.mOptions;
}

namespace host {

void SetOptions(const Options& options) {
  Options bounded = options;
  bounded.mConnectTimeout = std::clamp(options.mConnectTimeout, kShortestTimeout, kLongestTimeout);
  bounded.mStallTimeout = std::clamp(options.mStallTimeout, kShortestTimeout, kLongestTimeout);
  OptionsHolder& holder = TheOptions();
  const std::lock_guard lock(holder.mMutex);
  holder.mOptions = std::move(bounded);
}

}  // namespace host
}  // namespace qelnet
