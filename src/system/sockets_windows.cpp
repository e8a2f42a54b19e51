#include "system/sockets_windows.h"

#include <windows.h>
#include <winsock2.h>

#include <cerrno>

namespace vernoxa {

void WindowsSockets::startUp() {
  WSADATA data{};
  WSAStartup(MAKEWORD(2, 2), &data);
}

void WindowsSockets::cleanUp() {
  WSACleanup();
}

std::optional<Sockets::Handle> WindowsSockets::open() {
  const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  return socket == INVALID_SOCKET ? std::nullopt : std::optional<Handle>(socket);
}

bool WindowsSockets::connect(Handle socket, const char* address, std::uint16_t port) {
  sockaddr_in target{};
  target.sin_family = AF_INET;
  target.sin_port = htons(port);
  target.sin_addr.s_addr = inet_addr(address);
  return ::connect(socket, reinterpret_cast<const sockaddr*>(&target), sizeof target) == 0;
}

int WindowsSockets::send(Handle socket, std::string_view bytes) {
  return ::send(socket, bytes.data(), static_cast<int>(bytes.size()), 0);
}

int WindowsSockets::receive(Handle socket, std::span<char> buffer) {
  return ::recv(socket, buffer.data(), static_cast<int>(buffer.size()), 0);
}

bool WindowsSockets::waitReadable(Handle socket, std::chrono::milliseconds limit) {
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(socket, &readable);
  const auto milliseconds = limit.count();
  timeval timeout{static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
  return ::select(0, &readable, nullptr, nullptr, &timeout) > 0;
}

void WindowsSockets::shutDown(Handle socket) {
  ::shutdown(socket, SD_BOTH);
  CancelIoEx(reinterpret_cast<HANDLE>(socket), nullptr);  // a receive that blocks already does not notice it
}

void WindowsSockets::close(Handle socket) {
  ::closesocket(socket);
}

int WindowsSockets::lastErrorNumber() {
  return errno;
}

}  // namespace vernoxa
