#include "wire/envelope.h"

#include <gtest/gtest.h>

#include "system/fake_world.h"

namespace vernoxa {
namespace {

TEST(Envelope, ErrorReplyByteForByte) {
  FakeStandardOutput output;
  EXPECT_EQ(errorReply("x", R"({"Data":{"a":1},"Command":"GetNetsList"})", output),
            "{\n\t\"ErrInfo\":\t\"x\",\n\t\"Result\":\t\"1\",\n\t\"Data\":\t{\n\t},\n"
            "\t\"Command\":\t\"GetNetsList_EndResult\"\n}");
  EXPECT_EQ(output.text(), "");
}

TEST(Envelope, RequestsThatNameNoCommandHaveNoReply) {
  const struct {
    const char* request;
    const char* printed;
  } rows[] = {
      {"{}", "not value\n"},
      {R"({"command":"a"})", "not value\n"},
      {R"({"Command":1})", "not value\n"},
      {R"({"Command":{"Command":"a"}})", "not value\n"},
      {"[1]", "not value\n"},
      {"7", "not value\n"},
      {"{\"Command\":\"a\" nonsense}", "Error before: [nonsense}]\n"},
      {"", "Error before: []\n"},
  };
  for (const auto& row : rows) {
    FakeStandardOutput output;
    EXPECT_EQ(errorReply("x", row.request, output), std::nullopt) << row.request;
    EXPECT_EQ(output.text(), row.printed) << row.request;
  }
}

TEST(Envelope, MessagesBeyondTheBoundsAreLoggedNotPrinted) {
  FakeServices with;
  with.enableTraffic();
  const std::string deep(1001, '[');
  EXPECT_FALSE(parseMessage(deep, with.services));
  EXPECT_EQ(errorReply("x", deep, with.fake.output), std::nullopt);
  EXPECT_EQ(with.traffic(), "JSON refused: nested deeper than 1000 levels");
  EXPECT_EQ(with.fake.output.text(), "");
}

}  // namespace
}  // namespace vernoxa
