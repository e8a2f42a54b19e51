// Companion and host misbehave together for a week: what was told in the end is what is open.
#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "modules/companion_query.h"
#include "modules/request_commands.h"
#include "support/fake_script_host.h"
#include "trust/asked_companion.h"
#include "trust/failing_memory.h"
#include "trust/trust_rig_tcl.h"

namespace vernoxa {
namespace {

using namespace std::chrono_literals;
using Designs = std::map<std::string, long>;  // how often each was told as open since it was last told as closed

// A host that runs the requests of the link thread and asks the companion itself, a companion that it forwards to, and
// the link thread's pauses, in which designs are opened and closed and both ends do what they should not. Every third
// hour nobody misbehaves: when it is over, what was told has to be what is open.
class BothEnds final : public AnsweringSockets, public Clock {
 public:
  BothEnds(FakeSession& with, std::chrono::hours end) : with_(with), end_(end) {
    host_.answer("getDsnPinCount", "12");
    host_.during = [this](const std::string& script) { evaluated(script); };
  }

  Designs designs;  // each once
  Designs told;     // as the companion has it
  long requests = 0;
  long hoursOnOneLink = 0;  // quiet ones, of links that had been there before
  long halfWay = 0;         // blocks of memory that were held then
  std::map<std::string, long> misdeeds;

  // Clock
  LocalTime localTime() override { return {}; }
  std::chrono::milliseconds monotonic() override { return now_; }
  void sleep(std::chrono::milliseconds duration) override {
    now_ += duration;
    halfWay = now_ < end_ / 2 ? liveBlocks() : halfWay;
    if (std::exchange(wasQuiet_, quiet()) != quiet()) {
      quiet() ? beginQuiet() : endQuiet();
    }
    if (!quiet()) {
      misbehave();
    } else if (now_ >= end_ + 1h && !std::exchange(over_, true)) {
      endQuiet();
      stopCompanion();  // once more: then each is told exactly once
      startCompanion();
    } else if (now_ >= end_ + 2h) {
      throw ClockStopped();
    }
  }

  // Sockets
  bool connect(Handle socket, const char*, std::uint16_t port) override {
    if (port == link::hostPort) {
      hostSocket_ = socket;
      misdeeds["the host is not there yet"] += now_ < 5min ? 1 : 0;
      return now_ >= 5min;
    }
    asked_.connect();
    const bool accepted = listening_;
    if (!accepted) {
      now_ += random_() % 2 == 0 ? 2s : 0s;  // the system's own retries
      startAgain();
    }
    return accepted;
  }
  int send(Handle socket, std::string_view bytes) override {
    return socket == hostSocket_ ? AnsweringSockets::send(socket, bytes) : asked_.hear(bytes);
  }
  int receive(Handle socket, std::span<char> buffer) override {
    if (socket != hostSocket_) {
      return asked_.giveAnswer(buffer);
    }
    if (chance(400, "the host is slow or silent")) {
      now_ += std::chrono::minutes(1 + random_() % 30);
    }
    if (hostGone() || chance(300, "an answer of the host is lost")) {
      while (AnsweringSockets::receive(socket, buffer) > 0) {
      }
      return random_() % 2 == 0 ? -1 : 0;
    }
    return AnsweringSockets::receive(socket, buffer);
  }
  bool waitReadable(Handle, std::chrono::milliseconds limit) override { return asked_.await(limit, now_); }

 private:
  // The first hour, every third one after it, and all from the end on.
  bool quiet() const { return now_ >= end_ || now_ / 1h % 3 == 0; }
  bool hostGone() const { return !quiet() && now_ < hostBack_; }
  void beginQuiet() {
    startAgain();
    noticeBreak();
    quietSince_ = now_;
    designs.try_emplace("D:\\0.dsn", 1);  // while none is open, "No file!" keeps what was closed untold
    for (auto& [design, times] : told) {
      times = 1;  // whoever answers the previous question has it told twice
    }
  }
  void endQuiet() {
    EXPECT_EQ(told, designs) << now_ / 1min << " minutes";
    hoursOnOneLink += linkSince_ < quietSince_ ? 1 : 0;
  }

  std::string replyTo(const std::string& message) override {
    if (hostGone()) {
      return {};
    }
    ++requests;
    const std::string former = std::exchange(former_, with_.replyTo(plugin::linkEndpoint(), message, host_));
    return chance(150, "the host answers the previous question") && !former.empty() ? former : former_;
  }
  // Once in so many times, as long as anybody misbehaves.
  bool chance(unsigned times, const char* misdeed = "") {
    const bool now = !quiet() && random_() % times == 0;
    misdeeds[misdeed] += now ? 1 : 0;
    return now;
  }

  void misbehave() {
    const std::string design = "D:\\" + std::to_string(random_() % 8) + ".dsn";
    if (chance(10) && designs.erase(design) == 0) {
      designs[design] = 1;
    }
    if (chance(500, "the host's server is gone for a while")) {
      hostBack_ = now_ + std::chrono::minutes(1 + random_() % 20);
    }
    if (chance(10)) {
      askCompanion();
    }
    if (listening_ && chance(250, "the companion is gone")) {
      stopCompanion();
    } else {
      startAgain();
    }
    if (breakUnseen_ && chance(3)) {
      noticeBreak();
    }
    if (chance(50, "the companion speaks out of turn")) {
      with_.fake.output.forget();
      with_.fake.messages.forget();
      with_.replyTo(plugin::companionEndpoint(), AskedCompanion::unasked(random_), host_);
    }
  }
  // A command of the host's that asks the companion ends soon, with the right answer or with none.
  void askCompanion() {
    const std::string misdeed = asked_.choose(random_);
    const bool answers = listening_ && with_.companionLink.companionMayBeAsked() && asked_.answers();
    ++misdeeds[listening_ ? misdeed : "the companion is gone when it is asked"];
    const auto began = now_;
    with_.placement.PartIndex.clear();
    const Arguments none(0, nullptr);
    CommandCall call{none, host_};
    const modules::CompanionQuery query(with_.companionLink, *this, *this, with_.fake.output, with_.logs);
    EXPECT_EQ(modules::getSelfUserId(call, with_.placement, query).text, answers ? "7" : "") << misdeed;
    EXPECT_LE(now_ - began, 30s) << misdeed;
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
    linkSince_ = now_;
  }
  void startAgain() {
    if (!listening_ && (quiet() || random_() % 20 == 0)) {
      startCompanion();
    }
  }

  // What the host's procedures do.
  void evaluated(const std::string& script) {
    host_.scripts.clear();
    std::string paths;
    for (const auto& [design, once] : designs) {
      paths += design + ";";
    }
    host_.answer("InitPath", paths);
    if (script.starts_with("creatClient")) {
      connected_ = connected_ || (listening_ && !chance(2, "the host does not reach the companion"));
      host_.answer("creatClient", connected_ ? "0" : "1");
    } else if (script.starts_with("sendPacketGlobalHandle")) {
      const bool sent = (connected_ || breakUnseen_) && !chance(10, "a send fails");
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
      if (data.member("Status").text() == "Open") {
        ++told[design];
      } else {
        told.erase(design);
      }
    }
  }

  FakeSession& with_;
  const std::chrono::milliseconds end_;
  std::chrono::milliseconds now_{0};
  FakeScriptHost host_;
  std::mt19937 random_{20240305};
  std::string former_;
  Handle hostSocket_ = 0;
  std::chrono::milliseconds hostBack_{0};
  AskedCompanion asked_;
  std::chrono::milliseconds linkSince_{0};
  std::chrono::milliseconds quietSince_{0};
  bool wasQuiet_ = true;
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
  link::runLinkThread(client, with.companionLink, with.part<const link::FileStatus>(), ends, ends, with.fake.output,
                      with.logs);
  EXPECT_EQ(ends.told, ends.designs);
  EXPECT_GT(ends.hoursOnOneLink, hours.count() / 12) << "restarts hide what was missed";
  EXPECT_LE(liveBlocks(), ends.halfWay + 64) << "blocks stay behind";
  EXPECT_EQ(with.crashes(), "Fun111");  // how the stopped clock ends it
  EXPECT_GT(ends.requests, hours.count() * 100);
  EXPECT_EQ(ends.misdeeds.size(), 14U);  // the nameless one included
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
