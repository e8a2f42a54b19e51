// Paths that the host's thread and the link thread share.
#pragma once

#include <mutex>
#include <utility>

#include "system/file_path.h"

namespace vernoxa::inline system {

// Every access takes the lock; callers get copies.
class SharedPath {
 public:
  explicit SharedPath(FilePath path = {}) : path_(std::move(path)) {}

  FilePath get() const {
    const std::lock_guard lock(guard_);
    return path_;
  }
  void set(FilePath path) {
    const std::lock_guard lock(guard_);
    path_ = std::move(path);
  }

 private:
  mutable std::mutex guard_;
  FilePath path_;
};

// Starts as the plug-in's base directory and follows the project path that the companion reports, so that the cache
// folders follow the open project. No trailing "\".
class ProjectFolder : public SharedPath {
 public:
  using SharedPath::SharedPath;
};

// Full path of the host's Capture.exe; empty when it was not found.
class HostExecutable : public SharedPath {
 public:
  using SharedPath::SharedPath;
};

}  // namespace vernoxa::inline system
