// Windows Sockets 2.2.
#pragma once

#include "system/sockets.h"

namespace vernoxa {

class WindowsSockets final : public Sockets {
 public:
  void startUp() override;
  void cleanUp() override;
  std::optional<Handle> open() override;
  bool connect(Handle socket, const char* address, std::uint16_t port) override;
  int send(Handle socket, std::string_view bytes) override;
  int receive(Handle socket, std::span<char> buffer) override;
  bool waitReadable(Handle socket, std::chrono::milliseconds limit) override;
  void shutDown(Handle socket) override;
  void close(Handle socket) override;
  int lastErrorNumber() override;
};

}  // namespace vernoxa
