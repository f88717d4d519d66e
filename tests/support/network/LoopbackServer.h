// A server on the loopback interface, for tests of what goes over the network.
#pragma once

#include <openssl/ssl.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/support/network/ServerConnection.h"
#include "tests/support/network/Socket.h"
#include "tests/support/network/TestCertificates.h"

namespace testsupport {

struct SslContextDeleter {
  void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};

/// Accepts connections on a port of 127.0.0.1 from its construction to its end. Each is handled on a thread
/// of its own and closed when the handler returns; at the server's end the handlers are interrupted.
class LoopbackServer {
 public:
  using ConnectionHandler = std::function<void(ServerConnection& connection)>;
  /// Gets the path that is asked for, such as "/a?b", and returns all bytes of the answer.
  using Answerer = std::function<std::string(const std::string& path)>;

  explicit LoopbackServer(ConnectionHandler handler);
  /// Speaks TLS before the handler is called.
  LoopbackServer(const Identity& identity, ConnectionHandler handler);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  /// A handler that reads one request and answers it.
  [[nodiscard]] static ConnectionHandler Answering(Answerer answerer);

  /// "http://127.0.0.1:PORT" and the path, or "https://localhost:PORT", because not every system finds an
  /// address in a certificate.
  [[nodiscard]] std::string Url(std::string_view path) const;
  [[nodiscard]] int Port() const { return mPort; }

 private:
  using SslContext = std::unique_ptr<SSL_CTX, SslContextDeleter>;

  struct Handler {
    std::thread mThread;
    std::shared_ptr<std::atomic<bool>> mIsDone;
  };

  /// Without a context there is no TLS.
  LoopbackServer(SslContext tls, ConnectionHandler handler);
  [[nodiscard]] static SslContext MakeTls(const Identity& identity);
  void AcceptAll();
  /// Systems have only so many threads, those that have ended and were not joined included.
  void JoinDoneHandlers();
  void Handle(ServerConnection& connection);

  ConnectionHandler mHandler;
  SslContext mTls;
  Socket mSocket;
  int mPort;
  std::mutex mMutex;
  bool mIsEnding = false;
  std::vector<std::shared_ptr<ServerConnection>> mConnections;
  std::vector<Handler> mHandlers;
  std::thread mAccepter;
};

/// A whole answer, which says its length and that the connection ends. `moreHeaders` are whole lines.
[[nodiscard]] std::string HttpAnswer(std::string_view status, std::string_view body,
                                     std::string_view moreHeaders = {});

/// An answer that sends the client to another address.
[[nodiscard]] std::string HttpRedirect(std::string_view status, std::string_view location);

/// An address of 127.0.0.1 at whose port nobody listens.
[[nodiscard]] std::string UrlWithoutServer(std::string_view path);

}  // namespace testsupport
