#include "tests/support/network/ServerConnection.h"

#include <array>

namespace testsupport {

namespace {

constexpr std::string_view kEndOfHeaders = "\r\n\r\n";

}  // namespace

bool ServerConnection::BeginTls(SSL_CTX* context) {
  mTls.reset(SSL_new(context));
  if (!mTls || SSL_set_fd(mTls.get(), mSocket.ForTls()) != 1 || SSL_accept(mTls.get()) != 1) {
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
  const std::ptrdiff_t count = mSocket.Receive(bytes, size);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool ServerConnection::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::ptrdiff_t count = mTls ? SSL_write(mTls.get(), bytes.data(), static_cast<int>(bytes.size()))
                                      : mSocket.Send(bytes.data(), bytes.size());
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
  mSocket.EndSending();
}

void ServerConnection::Reset() {
  // Nothing more is said on TLS, not even its end.
  mTls.reset();
  const std::lock_guard lock(mMutex);
  mSocket.Break();
}

void ServerConnection::Interrupt() {
  const std::lock_guard lock(mMutex);
  if (mSocket.IsOpen()) mSocket.Interrupt();
}

}  // namespace testsupport
