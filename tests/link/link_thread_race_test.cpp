// The link thread as a real thread, beside a host thread that changes what the two share. Meant for the thread
// sanitizer, which reports what it finds as a failure.
#include <gmock/gmock.h>

#include <thread>

#include "link/link_thread.h"
#include "link/socket_client.h"
#include "system/fake_world.h"
#include "text/json.h"
#include "text/text.h"

namespace vernoxa::link {
namespace {

std::optional<std::string> answerAsHost(const std::string& request) {
  if (request.find("GetNewOpenPath") != std::string::npos) {
    return R"({"Result":"0","Data":{"ProjectPath":"D:\\a.dsn","CloseFile":"D:\\b.dsn"}})";
  }
  if (request.find("getDsnPinCount") != std::string::npos) {
    return R"({"Result":"0","Data":{"PinCount":"12"}})";
  }
  return R"({"Result":"0","Data":{"Path":"D:\\from companion"}})";
}

class LinkThreadRaceTest : public testing::Test, protected FakeSession {
 protected:
  LinkThreadRaceTest() {
    enableTraffic();
    fake.clock.stopAfter = 400;
    fake.sockets.listen(companionPort, {});
  }
};

TEST_F(LinkThreadRaceTest, SharedStateAndLogsWhileItPolls) {
  fake.sockets.listen(hostPort, {{}, StreamEnd::hang, answerAsHost});
  SocketClient client = newClient();
  LinkThread link = linkThread(client);
  std::thread thread([&] { link.run(); });
  for (int times = 0; times < 2000; ++times) {
    project.set(pathOf("D:\\from host"));
    EXPECT_THAT(project.get().utf8(), testing::StartsWith("D:\\from "));
    hostExecutable.set(pathOf("D:\\Capture.exe"));
    companionLink.setClientCreated(times % 3 == 0);
    companionLink.companionMayBeAsked();
    companionLink.takeAwaitedCount();
    logs.openTraffic().writeLine("host thread");
    EXPECT_TRUE(Json::parse(R"({"read":"beside the link thread"})").document);
    EXPECT_FALSE(Json::parse("{").document);
  }
  client.retire();
  thread.join();
  EXPECT_THAT(crashes(), testing::EndsWith("Fun111"));  // how the stopped clock ends it
  EXPECT_FALSE(fake.sockets.misused());
  const std::string log = fake.files.bytes("C:\\App\\Script\\Log\\schLog.txt");
  const std::string whole = "[Time]:2024-3-5 9:7:2:45.host thread\r\n";
  EXPECT_EQ(log.size() - replaceAll(log, whole, "").size(), 2000 * whole.size());  // lines never mix
}

// A second load retires the client that the first thread is blocked in.
TEST_F(LinkThreadRaceTest, RetiredWhileItWaitsForAReply) {
  fake.sockets.expect(hostPort, {{}, StreamEnd::hang, nullptr});
  SocketClient client = newClient();
  LinkThread link = linkThread(client);
  std::thread thread([&] { link.run(); });
  fake.sockets.waitUntilBlocked();
  client.retire();
  thread.join();
  EXPECT_EQ(crashes(), "Fun111");
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
  EXPECT_FALSE(fake.sockets.misused());
}

}  // namespace
}  // namespace vernoxa::link
