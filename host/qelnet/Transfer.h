// A request on its way.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/qelnet/Answer.h"
#include "host/qelnet/CurlHandles.h"
#include "host/qelnet/Request.h"

namespace qelnet {

/// A request, the libcurl handle that carries it, and what came back so far. One thread at a time.
class Transfer {
 public:
  using Clock = std::chrono::steady_clock;

  /// Prepares the handle; nothing is sent before a multi handle runs it. Throws when libcurl refuses it.
  explicit Transfer(Request request);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  /// The handle to run. Another one after each redirect.
  [[nodiscard]] CURL* Handle() const { return mHandle.get(); }

  /// When the server will have been silent for too long; nothing while the connection is being made.
  [[nodiscard]] std::optional<Clock::time_point> StallsAt() const;

  /// Takes up what libcurl says at the handle's end, when no multi handle has it any more. Returns false when
  /// a redirect is to be followed: the handle is new and waits to be run. Else the answer is there. Throws
  /// when there is no memory; then it has to be failed.
  [[nodiscard]] bool Conclude(CURLcode code);

  /// Makes the answer an empty one with status 0, and traces the reason.
  void Fail(std::string_view reason);

  /// How it ended.
  [[nodiscard]] host::Outcome GetOutcome() const;
  [[nodiscard]] Answer TakeAnswer();
  [[nodiscard]] Completion TakeCompletion();

 private:
  void Prepare();
  void SetTrust(CURL* handle) const;
  void SetReceivers(CURL* handle);

  static int OnConnected(void* transfer, char* remoteAddress, char* localAddress, int remotePort,
                         int localPort);
  static std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* transfer);
  static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* transfer);

  /// Returns false when the system does not trust the server that was just connected.
  bool IsServerAccepted();

  /// Returns false when the body would grow too large or there is no memory.
  bool Receive(std::string_view data);

  Request mRequest;
  HeaderList mHeaderList;
  std::array<char, CURL_ERROR_SIZE> mErrorText{};
  EasyHandle mHandle;  ///< after what it points to, so that it goes first
  std::optional<Clock::time_point> mLastSign;
  bool mHasWholeHead = false;  ///< whether the empty line after the headers has come
  int mStatus = 0;
  std::string mBody;
  std::string mFailure;  ///< why there is no answer; empty when nothing failed
};

}  // namespace qelnet
