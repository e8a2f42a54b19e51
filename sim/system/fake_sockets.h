// Sockets whose other ends are scripted. Usable from any thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "system/fake_clock.h"
#include "system/faults.h"
#include "system/sockets.h"

namespace vernoxa {

// A frame as it travels, built apart from the code under test.
std::string frameOf(std::string_view message);
// The messages of the complete frames at the start of a stream.
std::vector<std::string> messagesIn(std::string_view stream);

// What one receive finds.
struct Piece {
  std::string bytes;
  std::chrono::milliseconds delay{0};  // passes on the fake clock before the bytes are there
};

enum class StreamEnd {
  close,  // receives answer 0
  fail,   // receives answer -1
  hang,   // receives block until the socket is shut down
};

struct Peer {
  std::vector<Piece> pieces;
  StreamEnd end = StreamEnd::close;
  // The answer to each request message, before `end` comes; nothing ends the stream there.
  std::function<std::optional<std::string>(const std::string& request)> answer;
};

class FakeSockets final : public Sockets {
 public:
  explicit FakeSockets(FakeClock& clock) : clock_(clock) {}

  // The next connection to that port meets this peer. Without one it is refused.
  void expect(std::uint16_t port, Peer peer);
  // All further connections to that port meet it.
  void listen(std::uint16_t port, Peer peer);
  // The next connections to that port are refused, whoever is expected or listens there.
  void refuse(std::uint16_t port, int times);

  struct Connection {
    std::uint16_t port = 0;
    std::string sent;
    std::vector<std::size_t> sendSizes;
    bool shutDown = false;
    bool closed = false;
  };
  // Accepted connections in their order.
  std::vector<Connection> connections() const;
  int opened() const;       // sockets ever made
  int stillOpen() const;    // not closed yet
  int started() const;      // starts less clean-ups
  int refused() const;      // connection attempts that met nobody
  bool misused() const;     // a closed or unknown handle was used
  void waitUntilBlocked();  // until a receive blocks

  Faults faults;  // counts open, connect, send and receive
  int errorNumber = 10054;
  std::chrono::milliseconds refusalTakes{0};  // passes on the fake clock while a connection is refused

  void startUp() override;
  void cleanUp() override;
  std::optional<Handle> open() override;
  bool connect(Handle socket, const char* address, std::uint16_t port) override;
  int send(Handle socket, std::string_view bytes) override;
  int receive(Handle socket, std::span<char> buffer) override;
  bool waitReadable(Handle socket, std::chrono::milliseconds limit) override;
  void shutDown(Handle socket) override;
  void close(Handle socket) override;
  int lastErrorNumber() override { return errorNumber; }

 private:
  struct Socket {
    Connection connection;
    std::deque<Piece> pieces;
    Peer peer;
    int order = 0;                  // among the accepted ones, from 1; 0 while not connected
    std::size_t answeredBytes = 0;  // of what was sent
  };
  Socket* find(Handle socket);
  static void answerRequests(Socket& socket);

  FakeClock& clock_;
  mutable std::mutex guard_;
  std::condition_variable changed_;
  std::map<Handle, Socket> sockets_;
  std::map<std::uint16_t, std::deque<Peer>> expected_;
  std::map<std::uint16_t, Peer> listening_;
  std::map<std::uint16_t, int> refusing_;
  int accepted_ = 0;
  int refused_ = 0;
  int started_ = 0;
  int blocked_ = 0;
  bool misused_ = false;
};

}  // namespace vernoxa
