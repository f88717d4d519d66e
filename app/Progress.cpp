#include "app/Progress.h"

#include <cstdio>
#include <utility>

#include "host/qelcore/HostSetup.h"

namespace app {

namespace {

constexpr std::chrono::milliseconds kInterval{200};

void Write(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

Progress::Progress(std::string what, std::size_t count)
    : mWhat(std::move(what)), mCount(count), mIsWatched(qelcore::host::IsStandardErrorATerminal()) {}

Progress::~Progress() {
  Clear();
}

void Progress::Show(std::size_t done) {
  const auto now = std::chrono::steady_clock::now();
  if (!mIsWatched || now < mNext) return;
  mNext = now + kInterval;
  mIsShown = true;
  Write("\r\x1b[K" + std::to_string(done) + (mCount == 0 ? "" : " of " + std::to_string(mCount)) + ' ' +
        mWhat);
}

void Progress::Clear() {
  if (!mIsShown) return;
  mIsShown = false;
  Write("\r\x1b[K");
}

}  // namespace app
