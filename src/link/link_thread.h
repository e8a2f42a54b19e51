// The background thread that watches for the companion and reports opened and closed designs to it.
//
// The thread never calls Tcl. Over the process's connection to port 9610 it asks the host's scripts, which run each
// request on the host's own thread. Everything blocks and pauses through the interfaces passed in. It is given only
// what both threads may use.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "text/json.h"

namespace vernoxa::inline system {
class Clock;
class Logs;
class Sockets;
class StandardOutput;
}  // namespace vernoxa::inline system

namespace vernoxa::link {

class CompanionLink;
class FileStatus;
class SocketClient;

class LinkThread {
 public:
  // `client` is the process's connection to the host's scripts; only this thread uses it.
  LinkThread(SocketClient& client, CompanionLink& link, const FileStatus& status, Sockets& sockets, Clock& clock,
             StandardOutput& output, const Logs& logs)
      : client_(client), link_(link), status_(status), sockets_(sockets), clock_(clock), output_(output), logs_(logs) {}

  // Ends only after an exception, which the crash log receives as "Fun111". Never throws.
  void run() noexcept;

  // The steps of the loop; 0, or a negative number as their failure.
  // One connection attempt to the companion's port, closed at once.
  int testConnect();
  // Has the host's scripts connect to the companion.
  int creatClient();
  // One poll: reports newly opened and closed designs. The addresses are fixed; the name is historical.
  int connectToServerForPthread();

 private:
  // One attempt: 0 or -1. Notes whether a refusal came at once.
  int connect(SocketClient& client, std::uint16_t port);
  void connectToHost();
  void waitForCompanion();
  void pollForever();
  void reconnectCompanion();

  // One request and its answer; the reply is empty if it is not valid JSON.
  struct Exchange {
    bool received = false;
    Json reply;
  };
  Exchange exchange(const Json& request);
  int poll();
  // False if a receive failed. That ends the poll; the next one reports the rest.
  bool reportOpened(const std::string& path);
  bool reportClosed(const std::vector<std::string>& names);

  SocketClient& client_;
  CompanionLink& link_;
  const FileStatus& status_;
  Sockets& sockets_;
  Clock& clock_;
  StandardOutput& output_;
  const Logs& logs_;
};

// The whole thread, as a session starts it.
void runLinkThread(SocketClient& client, CompanionLink& link, const FileStatus& status, Sockets& sockets, Clock& clock,
                   StandardOutput& output, const Logs& logs);

}  // namespace vernoxa::link
