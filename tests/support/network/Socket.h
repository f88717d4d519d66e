// A socket of the loopback interface, as each system has it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace testsupport {

/// Owns a socket, or none. The thread that works with it may be interrupted by others, which call
/// `Interrupt`.
class Socket {
 public:
#if defined(_WIN32)
  using Handle = std::uintptr_t;
  static constexpr Handle kNone = ~Handle{0};
#else
  using Handle = int;
  static constexpr Handle kNone = -1;
#endif

  Socket() = default;
  ~Socket();
  Socket(Socket&& other) noexcept;
  Socket& operator=(Socket&& other) noexcept;
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  /// A socket with a port of 127.0.0.1, on which nobody listens yet. Throws when none is to be had.
  [[nodiscard]] static Socket Bound();

  [[nodiscard]] bool IsOpen() const {
    return mHandle != kNone;
  }
  [[nodiscard]] int Port() const;

  /// Throws when the system refuses.
  void Listen() const;

  /// Waits for a client. The result is not open after `StopAccepting`. Each piece that is sent to the client
  /// goes out by itself.
  [[nodiscard]] Socket Accept() const;

  /// Ends the waiting of `Accept`. Any thread may call.
  void StopAccepting() const;

  /// At most this many bytes; 0 or less at the end of the stream.
  [[nodiscard]] std::ptrdiff_t Receive(char* bytes, std::size_t size) const;
  [[nodiscard]] std::ptrdiff_t Send(const char* bytes, std::size_t size) const;

  /// Ends the stream of bytes to the client.
  void EndSending() const;

  /// Ends both streams and all waiting for them.
  void Interrupt() const;

  /// Closes the socket so that the client hears of a broken connection, not of an end.
  void Break();

  /// For `SSL_set_fd`.
  [[nodiscard]] int ForTls() const {
    return static_cast<int>(mHandle);
  }

  /// To be called on a thread that writes with TLS, where a client that is gone would end the process.
  static void SurviveGoneClients();

 private:
  explicit Socket(Handle handle) : mHandle(handle) {}
  void Close();

  Handle mHandle = kNone;
};

}  // namespace testsupport
