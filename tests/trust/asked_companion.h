// The companion as it answers the plug-in's own questions: not always, not at once, not always what it was asked.
#pragma once

#include <algorithm>
#include <chrono>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "system/fake_sockets.h"

namespace vernoxa {

class AskedCompanion {
 public:
  // What it says of its own accord.
  static const char* unasked(std::mt19937& random) {
    static constexpr const char* said[] = {R"({"Command":"FileStatus_EndResult","Data":{"Path":"E:\\x"}})", "{",
                                           R"({"Command":"CheckOpenState","Data":{"ProjectPath":"D:\\1.dsn"}})",
                                           R"({"Command":"GetSelfId_EndResult","Result":"0","Data":{"UserId":"7"}})"};
    return said[random() % std::size(said)];
  }

  // Chooses what happens to the next question, which is who is signed in; "" for nothing bad.
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
  int hear(std::string_view question) {
    sent_ = answer_;
    return static_cast<int>(question.size());
  }
  int giveAnswer(std::span<char> buffer) {
    const std::size_t count = sent_.copy(buffer.data(), buffer.size());
    sent_.erase(0, count);
    return static_cast<int>(count);
  }
  // Waits for the answer; whether something is there then.
  bool await(std::chrono::milliseconds limit, std::chrono::milliseconds& now) {
    const auto passed = std::min(limit, late_);
    now += passed;
    late_ -= passed;
    return late_.count() == 0;
  }

 private:
  std::string answer_;
  std::string sent_;  // what is left of it
  std::chrono::milliseconds late_{0};
  bool answers_ = false;
};

}  // namespace vernoxa
