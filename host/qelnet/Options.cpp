#include "host/qelnet/Options.h"

#include <algorithm>
#include <charconv>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "platform/qelcore/DebugDatabase.h"

namespace qelnet {

namespace {

constexpr std::chrono::milliseconds kShortestTimeout{1};
constexpr std::chrono::milliseconds kLongestTimeout = std::chrono::hours(24);

struct OptionsHolder {
  std::mutex mMutex;
  host::Options mOptions;
  bool mAreSet = false;
};

OptionsHolder& TheOptions() {
  // Never destroyed, because static objects of other libraries may still ask for something at the end.
  static OptionsHolder& holder = *new OptionsHolder;
  return holder;
}

/// The number in a text of digits alone, as near as it can be had within the bounds; nothing for other texts.
std::optional<std::size_t> ReadLimit(const std::string& text) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [place, error] = std::from_chars(text.data(), end, number);
  if (place != end || error == std::errc::invalid_argument) {
    return std::nullopt;
  }
  if (error == std::errc::result_out_of_range) {
    return host::kHighestDownloadLimit;
  }
  return std::clamp(number, host::kLowestDownloadLimit, host::kHighestDownloadLimit);
}

std::size_t LargestDownload() {
  const std::string usual = std::to_string(host::kUsualDownloadLimit);
  const std::string text = qelcore::DebugDatabase::Instance().GetEntry(host::kLargestDownloadSetting, usual);
  return ReadLimit(text).value_or(host::kUsualDownloadLimit);
}

}  // namespace

host::Options CurrentOptions() {
  const std::size_t largestDownload = LargestDownload();
  OptionsHolder& holder = TheOptions();
  const std::lock_guard lock(holder.mMutex);
  host::Options options = holder.mOptions;
  options.mLargestBody = holder.mAreSet ? std::min(options.mLargestBody, largestDownload) : largestDownload;
  return options;
}

namespace host {

void SetOptions(const Options& options) {
  Options bounded = options;
  bounded.mConnectTimeout = std::clamp(options.mConnectTimeout, kShortestTimeout, kLongestTimeout);
  bounded.mStallTimeout = std::clamp(options.mStallTimeout, kShortestTimeout, kLongestTimeout);
  bounded.mTotalTimeout = std::clamp(options.mTotalTimeout, kShortestTimeout, kLongestTimeout);
  OptionsHolder& holder = TheOptions();
  const std::lock_guard lock(holder.mMutex);
  holder.mOptions = std::move(bounded);
  holder.mAreSet = true;
}

}  // namespace host
}  // namespace qelnet
