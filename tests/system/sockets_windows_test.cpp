#include "system/system_windows.h"

#include <gtest/gtest.h>
#include <winsock2.h>

#include <thread>

#include "link/socket_client.h"
#include "system/fake_world.h"

namespace vernoxa::inline system {
namespace {

using std::chrono::milliseconds;

class WindowsSocketsTest : public testing::Test, protected FakeSession {
 protected:
  WindowsSocketsTest() {
    sockets_->startUp();
    server_ = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = inet_addr(link::localAddress);
    int size = sizeof address;
    ::bind(server_, reinterpret_cast<const sockaddr*>(&address), size);
    ::listen(server_, 5);
    ::getsockname(server_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
  }
  ~WindowsSocketsTest() override {
    ::closesocket(server_);
    sockets_->cleanUp();
  }

  // Answers the next connection with these pieces, a moment apart, and closes it; gives what came.
  std::string serve(const std::vector<std::string>& pieces, std::size_t wanted) {
    const SOCKET peer = ::accept(server_, nullptr, nullptr);
    std::string came;
    char buffer[1000];
    while (came.size() < wanted) {
      const int count = ::recv(peer, buffer, sizeof buffer, 0);
      if (count <= 0) {
        break;
      }
      came.append(buffer, static_cast<std::size_t>(count));
    }
    for (const std::string& piece : pieces) {
      ::send(peer, piece.data(), static_cast<int>(piece.size()), 0);
      Sleep(20);
    }
    ::closesocket(peer);
    return came;
  }

  const std::unique_ptr<Sockets> sockets_ = windowsSockets();
  const std::unique_ptr<Clock> clock_ = windowsClock();
  link::SocketClient client_{*sockets_, *clock_, fake.output, logs};
  SOCKET server_ = INVALID_SOCKET;
  std::uint16_t port_ = 0;
};

TEST_F(WindowsSocketsTest, PacketsThereAndBack) {
  const std::string request(30000, '\xD6');
  const std::string answer = frameOf(std::string(20000, '\xBC'));
  std::string came;
  std::thread server([&] {
    came = serve({answer.substr(0, 4), answer.substr(4, 3000), answer.substr(3004)}, frameOf(request).size());
  });
  ASSERT_EQ(client_.connect(link::localAddress, port_), 0);
  client_.sendPacket(request);
  std::string message;
  EXPECT_EQ(client_.receivePacket(message, milliseconds(5000)), 0);
  EXPECT_EQ(message, std::string(20000, '\xBC'));
  EXPECT_EQ(client_.receivePacket(message), -1);  // closed
  server.join();
  EXPECT_EQ(came, frameOf(request));
}

TEST_F(WindowsSocketsTest, SilentPeerIsGivenUp) {
  ASSERT_EQ(client_.connect(link::localAddress, port_), 0);
  std::string message;
  const auto before = clock_->monotonic();
  EXPECT_EQ(client_.receivePacket(message, milliseconds(200)), -1);
  EXPECT_GE((clock_->monotonic() - before).count(), 150);
  EXPECT_LT((clock_->monotonic() - before).count(), 5000);
}

TEST_F(WindowsSocketsTest, RetiringEndsABlockedReceive) {
  ASSERT_EQ(client_.connect(link::localAddress, port_), 0);
  std::thread other([&] {
    Sleep(100);
    client_.retire();
  });
  std::string message;
  EXPECT_EQ(client_.receivePacket(message), -1);
  other.join();
  EXPECT_EQ(client_.connect(link::localAddress, port_), -1);
}

TEST_F(WindowsSocketsTest, NobodyListens) {
  ::closesocket(server_);
  server_ = INVALID_SOCKET;
  EXPECT_EQ(client_.connect(link::localAddress, port_), -1);
  EXPECT_EQ(fake.output.text(), "connect error !");
}

}  // namespace
}  // namespace vernoxa::inline system
