// Companion and host misbehave together for a week: what was told in the end is what is open.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>

#include "support/fake_script_host.h"
#include "trust/failing_memory.h"
#include "trust/trust_rig_tcl.h"

namespace vernoxa {
namespace {

using Designs = std::set<std::string>;

// A host that runs the requests of the link thread, a companion that it forwards to, and the link thread's pauses, in
// which designs are opened and closed and both ends do what they should not.
class BothEnds final : public AnsweringSockets, public Clock {
 public:
  BothEnds(FakeSession& with, std::chrono::hours end) : with_(with), end_(end) {
    host_.answer("getDsnPinCount", "12");
    host_.during = [this](const std::string& script) { evaluated(script); };
  }

  Designs designs;
  Designs told;  // as the companion has it
  long requests = 0;
  long halfWay = 0;  // blocks of memory that were held then
  std::map<std::string, long> misdeeds;

  // Clock
  LocalTime localTime() override { return {}; }
  std::chrono::milliseconds monotonic() override { return now_; }
  void sleep(std::chrono::milliseconds duration) override {
    now_ += duration;
    if (now_ >= end_ + std::chrono::hours(1)) {
      throw ClockStopped();
    }
    if (now_ < end_) {
      if (now_ < end_ / 2) {
        halfWay = liveBlocks();
      }
      misbehave();
    } else if (!std::exchange(over_, true)) {
      stopCompanion();  // once more, so that no design opened since hides what was missed; then all is well
      startCompanion();
    }
  }

  // Sockets; the companion's port is only probed, its messages go through the host
  bool connect(Handle, const char*, std::uint16_t port) override { return port == link::hostPort || listening_; }
  int receive(Handle socket, std::span<char> buffer) override {
    if (chance(400, "is slow or silent")) {
      now_ += std::chrono::minutes(1 + random_() % 30);
    }
    return AnsweringSockets::receive(socket, buffer);
  }

 private:
  std::string replyTo(const std::string& message) override {
    ++requests;
    const std::string former = std::exchange(former_, with_.replyTo(plugin::linkEndpoint(), message, host_));
    return chance(300, "answers the previous question") && !former.empty() ? former : former_;
  }
  // Once in so many times, as long as anybody misbehaves.
  bool chance(unsigned times, const char* misdeed = "") {
    const bool now = now_ < end_ && random_() % times == 0;
    misdeeds[misdeed] += now ? 1 : 0;
    return now;
  }

  void misbehave() {
    const std::string design = "D:\\" + std::to_string(random_() % 8) + ".dsn";
    if (chance(10) && designs.erase(design) == 0) {
      designs.insert(design);
    }
    if (listening_ && chance(150, "the companion is gone")) {
      stopCompanion();
    } else if (!listening_ && chance(20)) {
      startCompanion();
    }
    if (breakUnseen_ && chance(3)) {
      noticeBreak();
    }
    if (chance(50, "the companion speaks out of turn")) {
      const char* const said[] = {R"({"Command":"FileStatus_EndResult","Data":{"Path":"E:\\x"}})", "{",
                                  R"({"Command":"CheckOpenState","Data":{"ProjectPath":"D:\\1.dsn"}})",
                                  R"({"Command":"GetSelfId_EndResult","Result":"0","Data":{"UserId":"7"}})"};
      with_.fake.output.forget();
      with_.fake.messages.forget();
      with_.replyTo(plugin::companionEndpoint(), said[random_() % std::size(said)], host_);
    }
  }
  void stopCompanion() {
    listening_ = connected_ = false;
    breakUnseen_ = true;
    told.clear();
  }
  // The host's script does so when its connection to the companion ends.
  void noticeBreak() {
    if (std::exchange(breakUnseen_, false)) {
      with_.companionLink.noteBreak();
    }
  }
  void startCompanion() {
    noticeBreak();
    listening_ = true;
  }

  // What the host's procedures do.
  void evaluated(const std::string& script) {
    host_.scripts.clear();
    std::string paths;
    for (const std::string& design : designs) {
      paths += design + ";";
    }
    host_.answer("InitPath", paths);
    if (script.starts_with("creatClient")) {
      connected_ = connected_ || (listening_ && !chance(5, "the host does not reach the companion"));
      host_.answer("creatClient", connected_ ? "0" : "1");
      host_.answer("creatClient 1", connected_ ? "0" : "1");
    } else if (script.starts_with("sendPacketGlobalHandle")) {
      const bool sent = (connected_ || breakUnseen_) && !chance(30, "a send fails");
      host_.answer("sendPacketGlobalHandle", sent ? "0" : "no connection", sent);
      if (sent && connected_) {  // what is sent to one that is gone is lost
        take(messageOf(script.substr(sendingScript("").size() - 1)).message);
      }
    }
  }
  void take(const std::string& message) {
    const Json parsed = Json::parse(message).document;
    const JsonView data = parsed.member("Data");
    const std::string design(data.member("FileName").text().value_or(""));
    if (parsed.member("Command").text() == "FileStatus") {
      told.erase(design);
      if (data.member("Status").text() == "Open") {
        told.insert(design);
      }
    }
  }

  FakeSession& with_;
  const std::chrono::milliseconds end_;
  std::chrono::milliseconds now_{0};
  FakeScriptHost host_;
  std::mt19937 random_{20240305};
  std::string former_;
  bool listening_ = true;
  bool connected_ = false;
  bool breakUnseen_ = false;
  bool over_ = false;
};

TEST(BothEndsTest, WhatWasToldInTheEndIsWhatIsOpen) {
  const std::chrono::hours hours(tryEverything() ? 24 * 7 : 12);
  FakeSession with;
  BothEnds ends(with, hours);
  link::SocketClient client(ends, ends, with.fake.output, with.logs);
  link::LinkThread(client, with.companionLink, with.part<const link::FileStatus>(), ends, ends, with.fake.output,
                   with.logs)
      .run();
  EXPECT_EQ(ends.told, ends.designs);
  EXPECT_FALSE(ends.designs.empty());
  EXPECT_LE(liveBlocks(), ends.halfWay + 64) << "blocks stay behind";
  EXPECT_EQ(with.crashes(), "Fun111");  // how the stopped clock ends it
  EXPECT_GT(ends.requests, hours.count() * 100);
  long misdeeds = 0;
  for (const auto& [what, times] : ends.misdeeds) {
    EXPECT_GT(times, 0) << what;
    misdeeds += what.empty() ? 0 : times;
  }
  RecordProperty("hours", static_cast<int>(hours.count()));
  RecordProperty("requests", static_cast<int>(ends.requests));
  RecordProperty("misdeeds", static_cast<int>(misdeeds));
}

}  // namespace
}  // namespace vernoxa
