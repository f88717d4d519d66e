#include "tests/support/network/ServerConnection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace testsupport {

namespace {

constexpr std::string_view kEndOfHeaders = "\r\n\r\n";

}  // namespace

ServerConnection::~ServerConnection() {
  mTls.reset();
  close(mSocket);
}

bool ServerConnection::BeginTls(SSL_CTX* context) {
  mTls.reset(SSL_new(context));
  if (!mTls || SSL_set_fd(mTls.get(), mSocket) != 1 || SSL_accept(mTls.get()) != 1) {
    mTls.reset();
    return false;
  }
  return true;
}

void ServerConnection::EndTls() {
  if (mTls) SSL_shutdown(mTls.get());
  mTls.reset();
}

std::string ServerConnection::ReadRequest() {
  std::string request;
  char byte = 0;
  while (!request.ends_with(kEndOfHeaders)) {
    if (Read(&byte, 1) == 0) return {};
    request += byte;
  }
  return request;
}

std::size_t ServerConnection::Read(char* bytes, std::size_t size) {
  if (mTls) {
    const int count = SSL_read(mTls.get(), bytes, static_cast<int>(size));
    return count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  const ssize_t count = recv(mSocket, bytes, size, 0);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool ServerConnection::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = mTls ? SSL_write(mTls.get(), bytes.data(), static_cast<int>(bytes.size()))
                               : send(mSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void ServerConnection::WaitForClose() {
  std::array<char, 256> bytes{};
  while (Read(bytes.data(), bytes.size()) > 0) {
  }
}

void ServerConnection::EndSending() const {
  shutdown(mSocket, SHUT_WR);
}

void ServerConnection::Reset() {
  // Nothing more is said on TLS, not even its end.
  mTls.reset();
  // Connecting to nowhere drops the connection at once, and leaves the handle for `Interrupt`.
  const sockaddr nowhere{.sa_family = AF_UNSPEC, .sa_data = {}};
  connect(mSocket, &nowhere, sizeof nowhere);
}

void ServerConnection::Interrupt() const {
  shutdown(mSocket, SHUT_RDWR);
}

}  // namespace testsupport
