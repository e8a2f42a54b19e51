#include "link/companion_link.h"

#include <utility>

namespace vernoxa::link {

bool CompanionLink::clientCreated() const {
  const std::lock_guard lock(guard_);
  return clientCreated_;
}

void CompanionLink::setClientCreated(bool created) {
  const std::lock_guard lock(guard_);
  clientCreated_ = created;
}

void CompanionLink::noteBreak() {
  const std::lock_guard lock(guard_);
  clientCreated_ = false;
  ++breaks_;
}

unsigned CompanionLink::breaks() const {
  const std::lock_guard lock(guard_);
  return breaks_;
}

void CompanionLink::setRefusedAtOnce(bool atOnce) {
  const std::lock_guard lock(guard_);
  refusedAtOnce_ = atOnce;
}

bool CompanionLink::companionMayBeAsked() const {
  const std::lock_guard lock(guard_);
  return clientCreated_ || refusedAtOnce_;
}

void CompanionLink::setAwaitedCount(std::string hostPath) {
  const std::lock_guard lock(guard_);
  awaitedCount_ = std::move(hostPath);
}

std::string CompanionLink::takeAwaitedCount() {
  const std::lock_guard lock(guard_);
  return std::exchange(awaitedCount_, {});
}

}  // namespace vernoxa::link
