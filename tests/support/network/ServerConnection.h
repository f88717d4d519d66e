// One connection as the server sees it.
#pragma once

#include <openssl/ssl.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "tests/support/network/Socket.h"

namespace testsupport {

struct SslDeleter {
  void operator()(SSL* connection) const { SSL_free(connection); }
};

/// A connection that was accepted, in plain text or with TLS. One thread reads and writes; any thread may
/// call `Interrupt`.
class ServerConnection {
 public:
  explicit ServerConnection(Socket socket) : mSocket(std::move(socket)) {}
  ~ServerConnection() = default;
  ServerConnection(const ServerConnection&) = delete;
  ServerConnection& operator=(const ServerConnection&) = delete;

  /// Answers the client's TLS handshake. Returns false when the client breaks it off.
  [[nodiscard]] bool BeginTls(SSL_CTX* context);

  /// Says the end of the stream, so that the client can tell it from a broken one.
  void EndTls();

  /// Reads up to the empty line that ends the headers, which is part of the result. Returns an empty text
  /// when the client goes away before.
  [[nodiscard]] std::string ReadRequest();

  /// Sends the bytes at once. Returns false when the client is gone.
  bool Write(std::string_view bytes);

  /// Returns when the client has gone or `Interrupt` was called.
  void WaitForClose();

  /// Ends the stream of bytes to the client, without a word on TLS.
  void EndSending() const;

  /// Ends the connection the hard way: the client's next write fails.
  void Reset();

  /// Ends all waiting.
  void Interrupt();

 private:
  /// Reads some bytes; 0 at the end.
  [[nodiscard]] std::size_t Read(char* bytes, std::size_t size);

  std::mutex mMutex;  ///< guards the closing of the socket against `Interrupt`
  Socket mSocket;
  std::unique_ptr<SSL, SslDeleter> mTls;
};

}  // namespace testsupport
