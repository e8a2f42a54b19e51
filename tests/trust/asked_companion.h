// The companion as it answers the plug-in's own questions: not always, not at once, not always what it was asked.
#pragma once

#include <algorithm>
#include <chrono>
#include <random>
#include <span>
#include <string>
#include <utility>

#include "system/fake_sockets.h"

namespace vernoxa {

class AskedCompanion {
 public:
  static constexpr const char* user = "7";  // whom it names when it is asked who is signed in

  // Chooses what happens to the next question; "" for nothing bad.
  std::string choose(std::mt19937& random) {
    answer_ = frameOf(R"({"Command":"GetSelfId_EndResult","Result":"0","Data":{"UserId":"7"}})");
    late_ = std::chrono::seconds(0);
    answers_ = false;
    switch (random() % 4) {
      case 0:
        late_ = std::chrono::seconds(1 + random() % 60);
        answers_ = late_ < std::chrono::seconds(30);
        return "the companion is slow when it is asked";
      case 1:
        answer_.resize(random() % answer_.size());
        return "the companion hangs up while it answers";
      case 2:
        answer_ = frameOf(R"({"Command":"GetMarketResPath_EndResult","Result":"0","Data":{"ResId":"3"}})");
        return "the companion answers the previous question";
      default:
        answers_ = true;
        return {};
    }
  }
  // Whether that question has to be answered in time.
  bool answers() const { return answers_; }

  void connect() { sent_.clear(); }
  void receiveQuestion() { sent_ = answer_; }
  int giveAnswer(std::span<char> buffer) {
    const std::size_t count = sent_.copy(buffer.data(), buffer.size());
    sent_.erase(0, count);
    return static_cast<int>(count);
  }
  // How long it is waited for, and whether something is there then.
  std::pair<std::chrono::milliseconds, bool> await(std::chrono::milliseconds limit) {
    const auto passed = std::min(limit, late_);
    late_ -= passed;
    return {passed, late_.count() == 0};
  }

 private:
  std::string answer_;
  std::string sent_;  // what is left of it
  std::chrono::milliseconds late_{0};
  bool answers_ = false;
};

}  // namespace vernoxa
