#include "system/system_windows.h"

#include <windows.h>
#include <winsock2.h>

#include <cerrno>

namespace vernoxa::inline system {
namespace {

class WindowsSockets final : public Sockets {
 public:
  void startUp() override {
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 2), &data);
  }

  void cleanUp() override { WSACleanup(); }

  std::optional<Handle> open() override {
    const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    return socket == INVALID_SOCKET ? std::nullopt : std::optional<Handle>(socket);
  }

  bool connect(Handle socket, const char* address, std::uint16_t port) override {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    target.sin_addr.s_addr = inet_addr(address);
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&target), sizeof target) == 0;
  }

  int send(Handle socket, std::string_view bytes) override {
    return ::send(socket, bytes.data(), static_cast<int>(bytes.size()), 0);
  }

  int receive(Handle socket, std::span<char> buffer) override {
    return ::recv(socket, buffer.data(), static_cast<int>(buffer.size()), 0);
  }

  bool waitReadable(Handle socket, std::chrono::milliseconds limit) override {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(socket, &readable);
    const auto milliseconds = limit.count();
    timeval timeout{static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
    return ::select(0, &readable, nullptr, nullptr, &timeout) > 0;
  }

  void shutDown(Handle socket) override {
    ::shutdown(socket, SD_BOTH);
    CancelIoEx(reinterpret_cast<HANDLE>(socket), nullptr);  // a receive that blocks already does not notice it
  }

  void close(Handle socket) override { ::closesocket(socket); }

  int lastErrorNumber() override { return errno; }
};

}  // namespace

std::unique_ptr<Sockets> windowsSockets() {
  return std::make_unique<WindowsSockets>();
}

}  // namespace vernoxa::inline system
