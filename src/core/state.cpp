#include "core/state.h"

#include <utility>

namespace vernoxa {

std::string LinkState::baseDirectory() const {
  const std::lock_guard lock(guard_);
  return baseDirectory_;
}

void LinkState::setBaseDirectory(std::string path) {
  const std::lock_guard lock(guard_);
  baseDirectory_ = std::move(path);
}

std::string LinkState::hostInstallPath() const {
  const std::lock_guard lock(guard_);
  return hostInstallPath_;
}

void LinkState::setHostInstallPath(std::string path) {
  const std::lock_guard lock(guard_);
  hostInstallPath_ = std::move(path);
}

bool LinkState::clientCreated() const {
  const std::lock_guard lock(guard_);
  return clientCreated_;
}

void LinkState::setClientCreated(bool created) {
  const std::lock_guard lock(guard_);
  clientCreated_ = created;
}

}  // namespace vernoxa
