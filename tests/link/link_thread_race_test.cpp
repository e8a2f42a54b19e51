// The link thread as a real thread, beside a host thread that changes what the two share. Meant for the thread
// sanitizer, which reports what it finds as a failure.
#include <thread>

#include "support/session_test.h"
#include "text/json.h"

namespace vernoxa::link {
namespace {

class LinkThreadRaceTest : public SessionTest {};

// In the end it waits for a reply, when a second load retires its client.
TEST_F(LinkThreadRaceTest, SharedStateAndLogsWhileItPolls) {
  enableTraffic();
  fake.clock.stopAfter = 600;
  fake.sockets.listen(companionPort, {});
  int left = 600;  // requests that are answered, in fewer than 400 pauses
  const auto answer = [&left](const std::string&) -> std::optional<std::string> {
    constexpr const char* everything = R"({"Result":"0","Data":{"ProjectPath":"D:\\a.dsn","CloseFile":"D:\\b.dsn",)"
                                       R"("PinCount":"12","Path":"D:\\from companion"}})";
    return left-- > 0 ? std::optional(everything) : std::nullopt;
  };
  fake.sockets.listen(hostPort, {{}, StreamEnd::hang, answer});
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
  fake.sockets.waitUntilBlocked();
  client.retire();
  thread.join();
  EXPECT_THAT(crashes(), testing::EndsWith("Fun111"));  // how the stopped clock ends it
  EXPECT_EQ(fake.sockets.stillOpen(), 0);
  EXPECT_FALSE(fake.sockets.misused());
  const std::string log = fake.files.bytes("C:\\App\\Script\\Log\\schLog.txt");
  const std::string whole = "[Time]:2024-3-5 9:7:2:45.host thread\r\n";
  EXPECT_EQ(log.size() - replaceAll(log, whole, "").size(), 2000 * whole.size());  // lines never mix
}

}  // namespace
}  // namespace vernoxa::link
