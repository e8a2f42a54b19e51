#include "trust/failing_memory.h"

#include <cJSON.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

namespace vernoxa {

Faults memoryFaults;

namespace {

thread_local bool counting = false;
std::atomic<long> live = 0;
std::atomic<long> liveSize = 0;

void* allocateOrNull(std::size_t size) {
  void* const block = counting && memoryFaults.strike() ? nullptr : std::malloc(size == 0 ? 1 : size);
  live += block != nullptr ? 1 : 0;
  liveSize += static_cast<long>(malloc_usable_size(block));
  return block;
}

void* allocate(std::size_t size) {
  void* const block = allocateOrNull(size);
  return block != nullptr ? block : throw std::bad_alloc();
}

void release(void* block) {
  live -= block != nullptr ? 1 : 0;
  liveSize -= static_cast<long>(malloc_usable_size(block));
  std::free(block);
}

const bool jsonUsesThese = [] {
  cJSON_Hooks hooks{allocateOrNull, release};
  cJSON_InitHooks(&hooks);
  return true;
}();

}  // namespace

MemoryCounts::MemoryCounts(bool counts) : former_(std::exchange(counting, counts)) {}

MemoryCounts::~MemoryCounts() {
  counting = former_;
}

long liveBlocks() {
  return live;
}

long liveBytes() {
  return liveSize;
}

}  // namespace vernoxa

void* operator new(std::size_t size) {
  return vernoxa::allocate(size);
}
void* operator new[](std::size_t size) {
  return vernoxa::allocate(size);
}
// std::stable_sort asks this way, and gives back the other.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return vernoxa::allocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return vernoxa::allocateOrNull(size);
}
void operator delete(void* block) noexcept {
  vernoxa::release(block);
}
void operator delete[](void* block) noexcept {
  vernoxa::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  vernoxa::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  vernoxa::release(block);
}
