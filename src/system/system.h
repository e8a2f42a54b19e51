// Smaller services of the operating system: GUIDs, locks, processes and the standard output.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "system/file_path.h"

namespace vernoxa::inline system {

// A globally unique identifier in its four fields.
struct Guid {
  std::uint32_t data1 = 0;
  std::uint16_t data2 = 0;
  std::uint16_t data3 = 0;
  std::array<std::uint8_t, 8> data4{};
};

class GuidSource {
 public:
  virtual ~GuidSource() = default;
  virtual std::optional<Guid> create() = 0;
};

// A recursive mutex: the thread that holds it may take it again. Released by the thread that took it.
class Lock {
 public:
  virtual ~Lock() = default;
  virtual void acquire() = 0;
  virtual void release() = 0;
};

class LockSource {
 public:
  virtual ~LockSource() = default;
  virtual std::unique_ptr<Lock> create() = 0;
};

struct Process {
  std::string executable;  // file name without folder, code page
  std::uint32_t id = 0;
};

class Processes {
 public:
  virtual ~Processes() = default;
  // In the system's order; empty if the system does not tell.
  virtual std::vector<Process> running() = 0;
  virtual int ownId() = 0;
  virtual FilePath currentFolder() = 0;
  virtual void setCurrentFolder(const FilePath& folder) = 0;
  // Opens a file of the current folder with one argument, minimised. A failure is not reported.
  virtual void start(const std::string& file, const std::string& argument) = 0;
};

// The process's standard output; in an editor without a console it goes nowhere. Usable from any thread.
class StandardOutput {
 public:
  virtual ~StandardOutput() = default;
  virtual void print(std::string_view text) = 0;
};

}  // namespace vernoxa::inline system
