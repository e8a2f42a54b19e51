#include "system/log.h"

#include "support/session_test.h"

namespace vernoxa::inline system {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr const char* crashFile = "C:\\App\\bin\\catchLog\\log.txt";
constexpr const char* trafficFile = "C:\\App\\Script\\Log\\schLog.txt";

class LogTest : public SessionTest {};

TEST_F(LogTest, LinesByteForByte) {
  enableTraffic();
  logs.openTraffic().writeLine(u8"原理图\nsecond"_gbk);
  logs.openTraffic().writeFormatted("acBuf[%d]:%x", 3, 0xffffff80U);
  fake.clock.local = {2025, 12, 31, 23, 59, 58, 999};
  logs.openTraffic().writeLine("");
  EXPECT_EQ(fake.files.bytes(trafficFile),
            u8"[Time]:2024-3-5 9:7:2:45.原理图\r\nsecond\r\n"_gbk
            "[Time]:2024-3-5 9:7:2:45.acBuf[3]:ffffff80\r\n"
            "[Time]:2025-12-31 23:59:58:999.\r\n");
}

TEST_F(LogTest, IsInTheCodePageWhateverALineHolds) {
  enableTraffic();
  logs.openTraffic().writeLine("{\"a\":\"" + utf8(u8"原理图") + u8"\",\"b\":\"原理图;"_gbk + utf8(u8"éx原;") + "\"}");
  logs.openTraffic().writeLine(utf8(u8"return:网表"));
  logs.openTraffic().writeFormatted("%s;", utf8(u8"é").c_str());  // two bytes of UTF-8 may be a character as well
  EXPECT_EQ(traffic(), std::string(u8"{\"a\":\"原理图\",\"b\":\"原理图;éx原;\"}\nreturn:网表\n"_gbk) + "\xC3\xA9;");
}

TEST_F(LogTest, FormattedLineIsCutOffAndStillEnds) {
  enableTraffic();
  for (const std::size_t size : {4094U, 4095U, 4096U, 9000U}) {
    logs.resetTraffic();
    logs.openTraffic().writeFormatted("%s", std::string(size, 'x').c_str());
    EXPECT_EQ(fake.files.bytes(trafficFile),
              "[Time]:2024-3-5 9:7:2:45." + std::string(std::min<std::size_t>(size, 4095), 'x') + "\r\n");
  }
}

TEST_F(LogTest, TrafficIsOnWhileItsFolderExists) {
  EXPECT_FALSE(logs.openTraffic().enabled());
  logs.openTraffic().writeLine("lost");
  fake.files.addFile("C:\\App\\Script\\Log", "a file of that name");
  EXPECT_FALSE(logs.openTraffic().enabled());
  fake.files.removeFile("C:\\App\\Script\\Log");
  enableTraffic();
  LogWriter open = logs.openTraffic();
  open.writeLine("one");
  fake.files.removeFile(trafficFile);
  open.writeLine("made again");
  EXPECT_EQ(traffic(), "made again");
}

TEST_F(LogTest, FreshTrafficLogFindsTheFileUnderItsOtherSpelling) {
  enableTraffic();
  logs.openTraffic().writeLine("old");
  logs.resetTraffic();
  EXPECT_EQ(fake.files.bytes(trafficFile), "(no file)");
  EXPECT_THAT(fake.files.changes(), Contains("remove C:\\App\\Script\\Log\\SchLog.txt"));
}

TEST_F(LogTest, CrashReportMakesItsFolder) {
  logs.reportCrash("ReadOpenPath");
  logs.reportCrash("sendUploadMarket exception");
  EXPECT_EQ(fake.files.bytes(crashFile),
            "[Time]:2024-3-5 9:7:2:45.ReadOpenPath\r\n[Time]:2024-3-5 9:7:2:45.sendUploadMarket exception\r\n");
  EXPECT_THAT(fake.files.changes(), ElementsAre("folder C:\\App\\bin\\catchLog", std::string("create ") + crashFile));
}

}  // namespace
}  // namespace vernoxa::inline system
