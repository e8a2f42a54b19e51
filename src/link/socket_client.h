// A TCP connection that sends and receives packets. The plug-in is always the client.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "system/sockets.h"
#include "wire/frame.h"

namespace vernoxa::inline system {
class Clock;
class LogWriter;
class Logs;
class StandardOutput;
}  // namespace vernoxa::inline system

namespace vernoxa::link {

inline constexpr const char* localAddress = "127.0.0.1";
constexpr std::uint16_t hostPort = 9610;       // served by the host's scripts
constexpr std::uint16_t companionPort = 9601;  // served by the companion

// Used by one thread at a time; `retire` may come from another.
class SocketClient {
 public:
  // Starts the system's sockets; the destructor closes the connection and cleans up.
  SocketClient(Sockets& sockets, Clock& clock, StandardOutput& output, const Logs& logs);
  ~SocketClient();
  SocketClient(const SocketClient&) = delete;
  SocketClient& operator=(const SocketClient&) = delete;

  // 0, or -1 with "invalid socket!" or "connect error !" on standard output. Closes a former connection first.
  int connect(const char* address, std::uint16_t port);

  // False also after a connection for which the system had no socket; true after one that was refused.
  bool hasSocket() { return current().has_value(); }

  // Sends a message (code page bytes) as one frame in pieces; failures are only logged.
  void sendPacket(std::string_view message);

  // 0 with the received message, or -1 when the peer closed or a receive failed. Throws std::runtime_error for a
  // payload that is not packet text. Without a limit it waits as long as the peer takes; with one, the whole reply has
  // to arrive within it.
  int receivePacket(std::string& message, std::optional<std::chrono::milliseconds> limit = std::nullopt);

  // Ends the connection for good: every later operation fails, a blocked one returns. For a client that was replaced
  // but may still be in use by its thread.
  void retire();

 private:
  std::optional<Sockets::Handle> current();
  void closeCurrent();
  int receiveSome(char* buffer, std::size_t size, const std::optional<std::chrono::milliseconds>& deadline);
  bool receivePayload(std::uint16_t length, std::string& packetText,
                      const std::optional<std::chrono::milliseconds>& deadline);
  void sendPieces(LogWriter& log, std::string_view packetText);

  Sockets& sockets_;
  Clock& clock_;
  StandardOutput& output_;
  const Logs& logs_;
  std::mutex guard_;  // what `retire` shares with the using thread: the handle and the mark
  std::optional<Sockets::Handle> socket_;
  bool retired_ = false;
};

}  // namespace vernoxa::link
