// What the host's thread and the link thread know about the connection to the companion.
#pragma once

#include <mutex>
#include <string>

namespace vernoxa::link {

// Every access takes the lock; callers get copies.
class CompanionLink {
 public:
  // True while the host's scripts hold a connection to the companion.
  bool clientCreated() const;
  void setClientCreated(bool created);
  // Notes that this connection broke; and how often it has broken so far.
  void noteBreak();
  unsigned breaks() const;

  // Whether the latest refused connection failed at once, or only after retries that the system makes by itself (on
  // Windows about two seconds for the local machine).
  void setRefusedAtOnce(bool atOnce);
  // False if connecting could hold the host's thread for the time of those retries, because nobody is known to listen.
  bool companionMayBeAsked() const;

  // The design whose pins the link thread is asking for; empty once it has the answer. If it is still set when the
  // thread asks for something else, the answer was lost.
  void setAwaitedCount(std::string hostPath);
  std::string takeAwaitedCount();

 private:
  mutable std::mutex guard_;
  std::string awaitedCount_;
  unsigned breaks_ = 0;
  bool clientCreated_ = false;
  bool refusedAtOnce_ = false;
};

}  // namespace vernoxa::link
