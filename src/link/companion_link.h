// What the host's thread and the link thread tell each other of the way to the companion.
#pragma once

#include <mutex>
#include <string>

namespace vernoxa::link {

// Every access is guarded; no reference into it leaves.
class CompanionLink {
 public:
  // True while the host's scripts hold a connection to the companion.
  bool clientCreated() const;
  void setClientCreated(bool created);
  // That connection is gone; how often it was so far.
  void noteBreak();
  unsigned breaks() const;

  // How the latest refused connection ended: at once, or after tries that the system made on its own (Windows takes
  // about two seconds for them on the local machine).
  void setRefusedAtOnce(bool atOnce);
  // False when an attempt to reach the companion could cost the host's thread those tries: nobody is known to listen.
  bool companionMayBeAsked() const;

  // The design whose pins the link thread is asking for; empty once it has the answer. One that is still there when
  // the thread asks for something else has lost its answer.
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
