// Trace messages of the library, all on one channel.
//
//   static TraceSite site(TraceSite::kDetail);
//   site.Write([&] { return "Download Blocklist URL: \"" + url + "\""; });
#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>
#include <utility>

namespace qelsystemcompatibilityreport {

/// One place in the code that traces. It remembers whether its level is enabled and asks again only when the
/// trace configuration's change counter has moved, so a disabled site costs two loads. Meant to be a static
/// object; any thread may use it.
class TraceSite {
 public:
  static constexpr int kError = 1;
  static constexpr int kWarning = 5;
  static constexpr int kDetail = 6;

  constexpr explicit TraceSite(int level) : mLevel(level) {}

  /// Calls `buildMessage` and traces the text that it returns, only when the level is enabled.
  template <typename BuildMessage>
  void Write(BuildMessage&& buildMessage) {
    if (IsEnabled()) Output(std::forward<BuildMessage>(buildMessage)());
  }

 private:
  [[nodiscard]] bool IsEnabled();
  void Output(std::string_view text) const;

  int mLevel;
  /// The change counter at the last question, and the answer in the lowest bit, in one word so that the two
  /// always belong together.
  std::atomic<std::uint64_t> mCountAndAnswer{0};
};

}  // namespace qelsystemcompatibilityreport
