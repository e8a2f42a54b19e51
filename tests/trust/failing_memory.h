// Memory that runs out when a test says so: replaces the C++ allocation functions of the whole program, and those of
// the JSON library. Tcl has its own, which end the process when memory is gone.
#pragma once

namespace vernoxa {

// Counts the allocations of the calling thread from now on and fails that one; 0 means that none fails.
void failAllocation(int number);
int countedAllocations();

// Blocks of the whole program that were allocated and not freed yet.
long liveBlocks();
long liveBytes();

// While one exists the calling thread's allocations neither count nor fail: for stand-ins that no exception may leave.
class EnoughMemory {
 public:
  EnoughMemory();
  ~EnoughMemory();
  EnoughMemory(const EnoughMemory&) = delete;
  EnoughMemory& operator=(const EnoughMemory&) = delete;
};

}  // namespace vernoxa
