#include "tests/support/network/LoopbackServer.h"

#include <stdexcept>
#include <utility>

namespace testsupport {

namespace {

/// The path of a request's first line.
std::string PathOf(const std::string& request) {
  const std::size_t start = request.find(' ') + 1;
  return request.substr(start, request.find(' ', start) - start);
}

}  // namespace

LoopbackServer::LoopbackServer(ConnectionHandler handler)
    : LoopbackServer(SslContext(), std::move(handler)) {}

LoopbackServer::LoopbackServer(const Identity& identity, ConnectionHandler handler)
    : LoopbackServer(MakeTls(identity), std::move(handler)) {}

LoopbackServer::LoopbackServer(SslContext tls, ConnectionHandler handler)
    : mHandler(std::move(handler)), mTls(std::move(tls)), mSocket(Socket::Bound()), mPort(mSocket.Port()) {
  mSocket.Listen();
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
  mSocket.StopAccepting();
  mAccepter.join();
  for (Handler& handler : mHandlers) handler.mThread.join();
}

void LoopbackServer::AcceptAll() {
  for (;;) {
    Socket client = mSocket.Accept();
    if (!client.IsOpen()) return;
    auto connection = std::make_shared<ServerConnection>(std::move(client));
    const std::lock_guard lock(mMutex);
    if (mIsEnding) return;
    mConnections.push_back(connection);
    JoinDoneHandlers();
    auto isDone = std::make_shared<std::atomic<bool>>(false);
    std::thread thread([this, isDone, connection = std::move(connection)]() mutable {
      Handle(*connection);
      {
        const std::lock_guard handlerLock(mMutex);
        std::erase(mConnections, connection);
        connection.reset();
      }
      *isDone = true;
    });
    mHandlers.push_back({std::move(thread), std::move(isDone)});
  }
}

void LoopbackServer::JoinDoneHandlers() {
  std::erase_if(mHandlers, [](Handler& handler) {
    if (!*handler.mIsDone) return false;
    handler.mThread.join();
    return true;
  });
}

void LoopbackServer::Handle(ServerConnection& connection) {
  Socket::SurviveGoneClients();
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
  return (mTls ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(mPort) + std::string(path);
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
  return "http://127.0.0.1:" + std::to_string(Socket::Bound().Port()) + std::string(path);
}

}  // namespace testsupport
