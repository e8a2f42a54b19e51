// Removes a file at the end of its scope, whatever happens, unless it is kept.
#pragma once

#include <utility>

#include "system/files.h"

namespace vernoxa::inline system {

class TemporaryFile {
 public:
  TemporaryFile(Files& files, FilePath path) : files_(files), path_(std::move(path)) {}
  ~TemporaryFile() {
    if (kept_) {
      return;
    }
    try {
      files_.removeFile(path_);
    } catch (...) {
      return;  // it stays; a destructor has nobody to tell
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const FilePath& path() const { return path_; }
  void keep() { kept_ = true; }

 private:
  Files& files_;
  const FilePath path_;
  bool kept_ = false;
};

}  // namespace vernoxa::inline system
