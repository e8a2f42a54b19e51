#include "system/fake_sockets.h"

#include <algorithm>

namespace vernoxa {
namespace {

constexpr std::size_t headerBytes = 4;

std::size_t lengthIn(std::string_view header) {
  std::size_t length = 0;
  for (std::size_t index = headerBytes; index-- > 0;) {
    length = length << 8U | static_cast<unsigned char>(header[index]);
  }
  return length;
}

}  // namespace

std::string frameOf(std::string_view message) {
  static constexpr char digits[] = "0123456789abcdef";
  const std::size_t length = message.size() * 2;
  std::string frame;
  for (unsigned index = 0; index < headerBytes; ++index) {
    frame.push_back(static_cast<char>(length >> (8 * index) & 0xFFU));
  }
  for (const char c : message) {
    frame.push_back(digits[static_cast<unsigned char>(c) >> 4U]);
    frame.push_back(digits[static_cast<unsigned char>(c) & 0x0FU]);
  }
  return frame;
}

std::vector<std::string> messagesIn(std::string_view stream) {
  std::vector<std::string> messages;
  while (stream.size() >= headerBytes && stream.size() - headerBytes >= lengthIn(stream)) {
    std::string message;
    const std::string_view text = stream.substr(headerBytes, lengthIn(stream));
    for (std::size_t index = 0; index + 1 < text.size(); index += 2) {
      message.push_back(static_cast<char>(std::stoi(std::string(text.substr(index, 2)), nullptr, 16)));
    }
    messages.push_back(message);
    stream.remove_prefix(headerBytes + text.size());
  }
  return messages;
}

void FakeSockets::expect(std::uint16_t port, Peer peer) {
  const std::lock_guard lock(guard_);
  expected_[port].push_back(std::move(peer));
}

void FakeSockets::listen(std::uint16_t port, Peer peer) {
  const std::lock_guard lock(guard_);
  listening_[port] = std::move(peer);
}

void FakeSockets::refuse(std::uint16_t port, int times) {
  const std::lock_guard lock(guard_);
  refusing_[port] = times;
}

std::vector<FakeSockets::Connection> FakeSockets::connections() const {
  const std::lock_guard lock(guard_);
  std::vector<Connection> accepted(static_cast<std::size_t>(accepted_));
  for (const auto& [handle, socket] : sockets_) {
    if (socket.order > 0) {
      accepted[static_cast<std::size_t>(socket.order - 1)] = socket.connection;
    }
  }
  return accepted;
}

int FakeSockets::opened() const {
  const std::lock_guard lock(guard_);
  return static_cast<int>(sockets_.size());
}

int FakeSockets::stillOpen() const {
  const std::lock_guard lock(guard_);
  return static_cast<int>(
      std::count_if(sockets_.begin(), sockets_.end(), [](const auto& each) { return !each.second.connection.closed; }));
}

int FakeSockets::started() const {
  const std::lock_guard lock(guard_);
  return started_;
}

int FakeSockets::refused() const {
  const std::lock_guard lock(guard_);
  return refused_;
}

bool FakeSockets::misused() const {
  const std::lock_guard lock(guard_);
  return misused_;
}

void FakeSockets::waitUntilBlocked() {
  std::unique_lock lock(guard_);
  changed_.wait(lock, [&] { return blocked_ > 0; });
}

void FakeSockets::startUp() {
  const std::lock_guard lock(guard_);
  ++started_;
}

void FakeSockets::cleanUp() {
  const std::lock_guard lock(guard_);
  --started_;
}

std::optional<Sockets::Handle> FakeSockets::open() {
  const std::lock_guard lock(guard_);
  if (faults.strike()) {
    return std::nullopt;
  }
  const Handle handle = 100 + sockets_.size();
  sockets_[handle];
  return handle;
}

bool FakeSockets::connect(Handle handle, const char* address, std::uint16_t port) {
  const std::lock_guard lock(guard_);
  Socket* const socket = find(handle);
  if (socket == nullptr || faults.strike()) {
    return false;
  }
  auto& queue = expected_[port];
  const auto standing = listening_.find(port);
  const bool nobody = queue.empty() && standing == listening_.end();
  if (std::string_view(address) != "127.0.0.1" || nobody || refusing_[port] > 0) {
    --refusing_[port];
    ++refused_;
    clock_.advance(refusalTakes);
    return false;
  }
  socket->peer = queue.empty() ? standing->second : queue.front();
  if (!queue.empty()) {
    queue.pop_front();
  }
  socket->pieces.assign(socket->peer.pieces.begin(), socket->peer.pieces.end());
  socket->connection.port = port;
  socket->order = ++accepted_;
  return true;
}

int FakeSockets::send(Handle handle, std::string_view bytes) {
  const std::lock_guard lock(guard_);
  Socket* const socket = find(handle);
  if (socket == nullptr || faults.strike()) {
    return -1;
  }
  socket->connection.sent.append(bytes);
  socket->connection.sendSizes.push_back(bytes.size());
  answerRequests(*socket);
  changed_.notify_all();
  return static_cast<int>(bytes.size());
}

void FakeSockets::answerRequests(Socket& socket) {
  if (!socket.peer.answer) {
    return;
  }
  std::string_view unanswered = std::string_view(socket.connection.sent).substr(socket.answeredBytes);
  for (const std::string& request : messagesIn(unanswered)) {
    const std::size_t frameBytes = headerBytes + lengthIn(unanswered);
    unanswered.remove_prefix(frameBytes);
    const auto answer = socket.peer.answer(request);
    socket.answeredBytes += frameBytes;  // not if that threw: then it is asked again
    if (answer) {
      const std::string frame = frameOf(*answer);
      socket.pieces.push_back({frame.substr(0, headerBytes), {}});
      if (frame.size() > headerBytes) {
        socket.pieces.push_back({frame.substr(headerBytes), {}});
      }
    }
  }
}

int FakeSockets::receive(Handle handle, std::span<char> buffer) {
  std::unique_lock lock(guard_);
  Socket* const socket = find(handle);
  if (socket == nullptr || faults.strike()) {
    return -1;
  }
  if (socket->pieces.empty() && socket->peer.end == StreamEnd::hang) {
    ++blocked_;
    changed_.notify_all();
    changed_.wait(lock, [&] { return socket->connection.shutDown || !socket->pieces.empty(); });
    --blocked_;
  }
  if (socket->connection.shutDown || socket->pieces.empty()) {
    return socket->peer.end == StreamEnd::fail ? -1 : 0;
  }
  Piece& piece = socket->pieces.front();
  clock_.advance(piece.delay);
  const std::size_t count = std::min(buffer.size(), piece.bytes.size());
  std::copy_n(piece.bytes.begin(), count, buffer.begin());
  piece = {piece.bytes.substr(count), {}};
  if (piece.bytes.empty()) {
    socket->pieces.pop_front();
  }
  return static_cast<int>(count);
}

bool FakeSockets::waitReadable(Handle handle, std::chrono::milliseconds limit) {
  const std::lock_guard lock(guard_);
  Socket* const socket = find(handle);
  if (socket == nullptr) {
    return false;
  }
  if (socket->pieces.empty()) {
    if (socket->peer.end == StreamEnd::hang && !socket->connection.shutDown) {
      clock_.advance(limit);
      return false;
    }
    return true;
  }
  std::chrono::milliseconds& delay = socket->pieces.front().delay;
  const auto passed = std::min(limit, delay);
  clock_.advance(passed);
  delay -= passed;
  return delay.count() == 0;
}

void FakeSockets::shutDown(Handle handle) {
  const std::lock_guard lock(guard_);
  if (Socket* const socket = find(handle)) {
    socket->connection.shutDown = true;
    changed_.notify_all();
  }
}

void FakeSockets::close(Handle handle) {
  const std::lock_guard lock(guard_);
  if (Socket* const socket = find(handle)) {
    socket->connection.closed = true;
  }
}

FakeSockets::Socket* FakeSockets::find(Handle handle) {
  const auto found = sockets_.find(handle);
  if (found == sockets_.end() || found->second.connection.closed) {
    misused_ = true;
    return nullptr;
  }
  return &found->second;
}

}  // namespace vernoxa
