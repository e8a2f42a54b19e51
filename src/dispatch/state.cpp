#include "dispatch/state.h"

#include <utility>

namespace vernoxa {

bool LinkState::clientCreated() const {
  const std::lock_guard lock(guard_);
  return clientCreated_;
}

void LinkState::setClientCreated(bool created) {
  const std::lock_guard lock(guard_);
  clientCreated_ = created;
}

void LinkState::noteBreak() {
  const std::lock_guard lock(guard_);
  clientCreated_ = false;
  ++breaks_;
}

unsigned LinkState::breaks() const {
  const std::lock_guard lock(guard_);
  return breaks_;
}

void LinkState::setRefusedAtOnce(bool atOnce) {
  const std::lock_guard lock(guard_);
  refusedAtOnce_ = atOnce;
}

bool LinkState::companionMayBeAsked() const {
  const std::lock_guard lock(guard_);
  return clientCreated_ || refusedAtOnce_;
}

void LinkState::setAwaitedCount(std::string hostPath) {
  const std::lock_guard lock(guard_);
  awaitedCount_ = std::move(hostPath);
}

std::string LinkState::takeAwaitedCount() {
  const std::lock_guard lock(guard_);
  return std::exchange(awaitedCount_, {});
}

std::string LinkState::otherNameOf(const std::string& hostPath) const {
  const std::lock_guard lock(guard_);
  const auto found = otherNames_.find(hostPath);
  return found == otherNames_.end() ? std::string() : found->second;
}

bool LinkState::keepOtherName(const std::string& hostPath, const std::string& name) {
  const std::lock_guard lock(guard_);
  return otherNames_.insert_or_assign(hostPath, name).second;
}

}  // namespace vernoxa
