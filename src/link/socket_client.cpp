#include "link/socket_client.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "system/clock.h"
#include "system/log.h"
#include "system/system.h"
#include "wire/packet_text.h"

namespace vernoxa::link {
namespace {

// A header byte is logged as a signed character: 0x80 and more print as eight digits.
void logHeader(LogWriter& log, const char* format, const FrameHeader& header) {
  for (std::size_t index = 0; index < header.size(); ++index) {
    log.writeFormatted(format, static_cast<int>(index), static_cast<unsigned>(static_cast<signed char>(header[index])));
  }
}

}  // namespace

SocketClient::SocketClient(Sockets& sockets, Clock& clock, StandardOutput& output, const Logs& logs)
    : sockets_(sockets), clock_(clock), output_(output), logs_(logs) {
  sockets_.startUp();
}

SocketClient::~SocketClient() {
  closeCurrent();
  sockets_.cleanUp();
}

int SocketClient::connect(const char* address, std::uint16_t port) {
  closeCurrent();
  const auto socket = sockets_.open();
  if (!socket) {
    output_.print("invalid socket!");
    return -1;
  }
  {
    const std::lock_guard lock(guard_);
    socket_ = socket;
  }
  if (!current() || !sockets_.connect(*socket, address, port)) {
    output_.print("connect error !");
    return -1;
  }
  return 0;
}

void SocketClient::sendPacket(std::string_view message) {
  LogWriter log = logs_.openTraffic();
  log.writeLine(message);
  const std::string packetText = packetTextOf(message);
  const FrameHeader header = frameHeaderFor(packetText.size());
  logHeader(log, "acBuf[%d]:%x", header);
  log.writeFormatted("Length:%d", static_cast<int>(packetText.size()));
  log.writeLine(packetText);
  if (const auto socket = current()) {
    sockets_.send(*socket, std::string_view(header.data(), header.size()));
  }
  sendPieces(log, packetText);
  log.writeLine("==========================send over");
}

void SocketClient::sendPieces(LogWriter& log, std::string_view packetText) {
  for (std::size_t start = 0; start < packetText.size(); start += framePieceBytes) {
    const auto socket = current();
    if (!socket || sockets_.send(*socket, packetText.substr(start, framePieceBytes)) < 0) {
      log.writeFormatted("errno:%d", sockets_.lastErrorNumber());
    }
  }
}

int SocketClient::receivePacket(std::string& message, std::optional<std::chrono::milliseconds> limit) {
  const auto deadline = limit ? std::optional(clock_.monotonic() + *limit) : std::nullopt;
  LogWriter log = logs_.openTraffic();
  FrameHeader header{};
  if (receiveSome(header.data(), header.size(), deadline) <= 0) {
    return -1;
  }
  const std::uint32_t length = payloadBytesOf(header);
  logHeader(log, "revData[%d]:%x", header);
  log.writeFormatted("len:%d", static_cast<int>(length));
  std::string packetText;
  if (!receivePayload(countedBytes(length), packetText, deadline)) {
    return -1;
  }
  DecodedPacket decoded = messageOf(packetText);
  if (!decoded.valid) {
    throw std::runtime_error("received payload is no packet text");
  }
  message = std::move(decoded.message);
  log.writeLine(message);
  log.writeLine("==========================recv over");
  return 0;
}

// False when the peer closed or a receive failed.
bool SocketClient::receivePayload(std::uint16_t length, std::string& packetText,
                                  const std::optional<std::chrono::milliseconds>& deadline) {
  std::uint16_t received = 0;
  while (received < length) {
    std::array<char, framePieceBytes> buffer{};
    const std::size_t wanted = std::min<std::size_t>(framePieceBytes, static_cast<std::size_t>(length - received));
    const int count = receiveSome(buffer.data(), wanted, deadline);
    if (count <= 0) {
      return false;
    }
    const std::string_view piece(buffer.data(), static_cast<std::size_t>(count));
    packetText.append(piece.substr(0, piece.find('\0')));  // what stands behind a NUL byte counts, but is not kept
    received = static_cast<std::uint16_t>(received + count);
  }
  return true;
}

// As the system receives; 0 also without a connection and when the time is over.
int SocketClient::receiveSome(char* buffer, std::size_t size,
                              const std::optional<std::chrono::milliseconds>& deadline) {
  const auto socket = current();
  if (!socket) {
    return 0;
  }
  if (deadline) {
    const auto left = *deadline - clock_.monotonic();
    if (left <= std::chrono::milliseconds(0) || !sockets_.waitReadable(*socket, left)) {
      return 0;
    }
  }
  return sockets_.receive(*socket, std::span(buffer, size));
}

void SocketClient::retire() {
  const std::lock_guard lock(guard_);
  retired_ = true;
  if (socket_) {
    sockets_.shutDown(*socket_);
  }
}

std::optional<Sockets::Handle> SocketClient::current() {
  const std::lock_guard lock(guard_);
  if (retired_ && socket_) {
    sockets_.close(*socket_);
    socket_.reset();
  }
  return socket_;
}

void SocketClient::closeCurrent() {
  const std::lock_guard lock(guard_);
  if (socket_) {
    sockets_.close(*socket_);
    socket_.reset();
  }
}

}  // namespace vernoxa::link
