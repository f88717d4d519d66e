#include "tests/support/network/LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <utility>

namespace testsupport {

namespace {

struct BoundSocket {
  int mSocket;
  int mPort;
};

BoundSocket Bind() {
  const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  // The socket calls take every kind of address by its general type.
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  if (handle < 0 || bind(handle, general, size) != 0 || getsockname(handle, general, &size) != 0) {
    throw std::runtime_error("no port of the loopback interface is to be had");
  }
  return {handle, ntohs(address.sin_port)};
}

/// The path of a request's first line.
std::string PathOf(const std::string& request) {
  const std::size_t start = request.find(' ') + 1;
  return request.substr(start, request.find(' ', start) - start);
}

/// TLS writes without a flag against the signal, and a client may be gone at any time.
void BlockBrokenPipeSignal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace

LoopbackServer::LoopbackServer(ConnectionHandler handler)
    : LoopbackServer(SslContext(), std::move(handler)) {}

LoopbackServer::LoopbackServer(const Identity& identity, ConnectionHandler handler)
    : LoopbackServer(MakeTls(identity), std::move(handler)) {}

LoopbackServer::LoopbackServer(SslContext tls, ConnectionHandler handler)
    : mHandler(std::move(handler)), mTls(std::move(tls)) {
  const BoundSocket bound = Bind();
  mSocket = bound.mSocket;
  mPort = bound.mPort;
  if (listen(mSocket, SOMAXCONN) != 0) throw std::runtime_error("the server cannot listen");
  mAccepter = std::thread([this] { AcceptAll(); });
}

LoopbackServer::SslContext LoopbackServer::MakeTls(const Identity& identity) {
  SslContext tls(SSL_CTX_new(TLS_server_method()));
  if (!tls || SSL_CTX_use_certificate(tls.get(), identity.mCertificate.get()) != 1 ||
      SSL_CTX_use_PrivateKey(tls.get(), identity.mKey.get()) != 1) {
    throw std::runtime_error("the server cannot use its certificate");
  }
  return tls;
}

LoopbackServer::~LoopbackServer() {
  {
    const std::lock_guard lock(mMutex);
    mIsEnding = true;
    for (const auto& connection : mConnections) connection->Interrupt();
  }
  shutdown(mSocket, SHUT_RDWR);
  mAccepter.join();
  for (std::thread& handler : mHandlers) handler.join();
  close(mSocket);
}

void LoopbackServer::AcceptAll() {
  for (;;) {
    const int handle = accept4(mSocket, nullptr, nullptr, SOCK_CLOEXEC);
    if (handle < 0) return;
    // Each piece goes out by itself, as the tests mean it.
    const int isOn = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &isOn, sizeof isOn);
    auto connection = std::make_shared<ServerConnection>(handle);
    const std::lock_guard lock(mMutex);
    if (mIsEnding) return;
    mConnections.push_back(connection);
    mHandlers.emplace_back([this, connection = std::move(connection)]() mutable {
      Handle(*connection);
      const std::lock_guard handlerLock(mMutex);
      std::erase(mConnections, connection);
      connection.reset();
    });
  }
}

void LoopbackServer::Handle(ServerConnection& connection) {
  BlockBrokenPipeSignal();
  if (mTls && !connection.BeginTls(mTls.get())) return;
  mHandler(connection);
  connection.EndTls();
}

LoopbackServer::ConnectionHandler LoopbackServer::Answering(Answerer answerer) {
  return [answerer = std::move(answerer)](ServerConnection& connection) {
    const std::string request = connection.ReadRequest();
    if (!request.empty()) connection.Write(answerer(PathOf(request)));
  };
}

std::string LoopbackServer::Url(std::string_view path) const {
  return (mTls ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(mPort) + std::string(path);
}

std::string HttpAnswer(std::string_view status, std::string_view body, std::string_view moreHeaders) {
  std::string answer = "HTTP/1.1 ";
  answer.append(status).append("\r\nContent-Length: ").append(std::to_string(body.size()));
  answer.append("\r\nConnection: close\r\n").append(moreHeaders).append("\r\n").append(body);
  return answer;
}

std::string HttpRedirect(std::string_view status, std::string_view location) {
  return HttpAnswer(status, "moved", "Location: " + std::string(location) + "\r\n");
}

std::string UrlWithoutServer(std::string_view path) {
  const BoundSocket bound = Bind();
  close(bound.mSocket);
  return "http://127.0.0.1:" + std::to_string(bound.mPort) + std::string(path);
}

}  // namespace testsupport
