// Memory that runs out when a test says so: replaces the C++ allocation functions of the whole program, and those of
// the JSON library. Tcl has its own, which end the process when memory is gone.
#pragma once

#include "system/faults.h"

namespace vernoxa {

// Strikes the allocations that count.
extern Faults memoryFaults;

// Whether the calling thread's allocations count, and may fail, while it exists. Without one they do not.
class MemoryCounts {
 public:
  explicit MemoryCounts(bool counts);
  ~MemoryCounts();
  MemoryCounts(const MemoryCounts&) = delete;
  MemoryCounts& operator=(const MemoryCounts&) = delete;

 private:
  bool former_;
};

// Blocks of the whole program that were allocated and not freed yet.
long liveBlocks();
long liveBytes();

}  // namespace vernoxa
