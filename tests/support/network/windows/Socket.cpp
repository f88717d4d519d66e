#include "tests/support/network/Socket.h"

#include <stdexcept>

#include "tests/support/windows/SystemHeaders.h"

namespace testsupport {

namespace {

/// Nothing of the system's sockets works before the first call of this.
void StartSockets() {
  static const int result = [] {
    WSADATA data{};
    return WSAStartup(MAKEWORD(2, 2), &data);
  }();
  if (result != 0) throw std::runtime_error("there are no sockets");
}

sockaddr_in LoopbackAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<u_short>(port));
  return address;
}

}  // namespace

Socket Socket::Bound() {
  StartSockets();
  // Not inherited by programs that a test starts.
  Socket result(WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                           WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT));
  const sockaddr_in address = LoopbackAddress(0);
  // The socket calls take every kind of address by its general type.
  if (!result.IsOpen() ||
      bind(result.mHandle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no port of the loopback interface is to be had");
  }
  return result;
}

int Socket::Port() const {
  sockaddr_in address{};
  int size = sizeof address;
  if (getsockname(mHandle, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("the socket has no port");
  }
  return ntohs(address.sin_port);
}

void Socket::Listen() const {
  if (listen(mHandle, SOMAXCONN) != 0) throw std::runtime_error("the server cannot listen");
}

Socket Socket::Accept() const {
  Socket client(accept(mHandle, nullptr, nullptr));
  const char isOn = 1;
  if (client.IsOpen()) setsockopt(client.mHandle, IPPROTO_TCP, TCP_NODELAY, &isOn, sizeof isOn);
  return client;
}

void Socket::StopAccepting() const {
  // Nothing else ends the waiting of another thread: a client comes, and is gone.
  const Socket client = Bound();
  const sockaddr_in address = LoopbackAddress(Port());
  connect(client.mHandle, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

std::ptrdiff_t Socket::Receive(char* bytes, std::size_t size) const {
  return recv(mHandle, bytes, static_cast<int>(size), 0);
}

std::ptrdiff_t Socket::Send(const char* bytes, std::size_t size) const {
  return send(mHandle, bytes, static_cast<int>(size), 0);
}

void Socket::EndSending() const {
  shutdown(mHandle, SD_SEND);
}

void Socket::Interrupt() const {
  shutdown(mHandle, SD_BOTH);
}

void Socket::Break() {
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  setsockopt(mHandle, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof atOnce);
  Close();
}

void Socket::SurviveGoneClients() {}

void Socket::Close() {
  if (IsOpen()) closesocket(mHandle);
  mHandle = kNone;
}

}  // namespace testsupport
