#include "tests/support/network/Socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace testsupport {

Socket Socket::Bound() {
  Socket result(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  // The socket calls take every kind of address by its general type.
  if (!result.IsOpen() ||
      bind(result.mHandle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no port of the loopback interface is to be had");
  }
  return result;
}

int Socket::Port() const {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (getsockname(mHandle, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("the socket has no port");
  }
  return ntohs(address.sin_port);
}

void Socket::Listen() const {
  if (listen(mHandle, SOMAXCONN) != 0) throw std::runtime_error("the server cannot listen");
}

Socket Socket::Accept() const {
  Socket client(accept4(mHandle, nullptr, nullptr, SOCK_CLOEXEC));
  const int isOn = 1;
  if (client.IsOpen()) setsockopt(client.mHandle, IPPROTO_TCP, TCP_NODELAY, &isOn, sizeof isOn);
  return client;
}

void Socket::StopAccepting() const {
  shutdown(mHandle, SHUT_RDWR);
}

std::ptrdiff_t Socket::Receive(char* bytes, std::size_t size) const {
  return recv(mHandle, bytes, size, 0);
}

std::ptrdiff_t Socket::Send(const char* bytes, std::size_t size) const {
  return send(mHandle, bytes, size, MSG_NOSIGNAL);
}

void Socket::EndSending() const {
  shutdown(mHandle, SHUT_WR);
}

void Socket::Interrupt() const {
  shutdown(mHandle, SHUT_RDWR);
}

void Socket::Break() {
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  setsockopt(mHandle, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  Close();
}

void Socket::SurviveGoneClients() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void Socket::Close() {
  if (IsOpen()) close(mHandle);
  mHandle = kNone;
}

}  // namespace testsupport
