// TCP client sockets. Each function is one system call, so that tests can make each of them fail.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vernoxa::inline system {

// Usable from any thread; one socket is written and read by one thread at a time, `shutDown` may come from another.
class Sockets {
 public:
  using Handle = std::uintptr_t;

  virtual ~Sockets() = default;
  // Each start is matched by one clean-up (Windows counts them).
  virtual void startUp() = 0;
  virtual void cleanUp() = 0;
  // A new TCP socket; `nullopt` if the system gives none.
  virtual std::optional<Handle> open() = 0;
  // Blocks as long as the system does. `address` is dotted IPv4 text.
  virtual bool connect(Handle socket, const char* address, std::uint16_t port) = 0;
  // The number of bytes that the system took; negative on failure.
  virtual int send(Handle socket, std::string_view bytes) = 0;
  // The number of bytes received; 0 when the other end closed, negative on failure. Blocks.
  virtual int receive(Handle socket, std::span<char> buffer) = 0;
  // True once a receive would not block; false if nothing came within `limit`.
  virtual bool waitReadable(Handle socket, std::chrono::milliseconds limit) = 0;
  // Ends the conversation: a blocked receive returns. The handle stays valid until `close`.
  virtual void shutDown(Handle socket) = 0;
  virtual void close(Handle socket) = 0;
  // The C runtime's `errno` after the calling thread's last failed call.
  virtual int lastErrorNumber() = 0;
};

}  // namespace vernoxa::inline system
