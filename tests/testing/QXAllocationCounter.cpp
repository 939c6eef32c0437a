#include "QXAllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> g_nAllocations{0};
/// The count of the call to be refused.
std::atomic<long> g_nRefused{0};
std::atomic<std::size_t> g_nLargest{0};

}  // namespace

namespace QXC {

long GetAllocationCount() {
  return g_nAllocations.load(std::memory_order_relaxed);
}

void RefuseAllocation(long nNumber) {
  g_nRefused.store(nNumber == 0 ? 0 : GetAllocationCount() + nNumber, std::memory_order_relaxed);
}

std::size_t GetLargestAllocation() {
  return g_nLargest.load(std::memory_order_relaxed);
}

void ForgetLargestAllocation() {
  g_nLargest.store(0, std::memory_order_relaxed);
}

}  // namespace QXC

void* operator new(std::size_t nSize) {
  std::size_t nLargest = g_nLargest.load(std::memory_order_relaxed);
  while (nSize > nLargest && !g_nLargest.compare_exchange_weak(nLargest, nSize, std::memory_order_relaxed)) {}
  long const nNumber = g_nAllocations.fetch_add(1, std::memory_order_relaxed) + 1;
  if (nNumber == g_nRefused.load(std::memory_order_relaxed)) throw std::bad_alloc();
  if (void* const pMemory = std::malloc(nSize > 0 ? nSize : 1)) {
    return pMemory;
  }
  throw std::bad_alloc();
}
void* operator new[](std::size_t nSize) {
  return operator new(nSize);
}
// The library's own forms would call the ones above; a sanitizer's do not, and then miss their delete.
void* operator new(std::size_t nSize, std::nothrow_t const&) noexcept {
  try {
    return operator new(nSize);
  } catch (std::bad_alloc const&) {
    return nullptr;
  }
}
void* operator new[](std::size_t nSize, std::nothrow_t const& tag) noexcept {
  return operator new(nSize, tag);
}
void operator delete(void* pMemory) noexcept {
  std::free(pMemory);
}
void operator delete[](void* pMemory) noexcept {
  std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t /*nSize*/) noexcept {
  std::free(pMemory);
}
void operator delete[](void* pMemory, std::size_t /*nSize*/) noexcept {
  std::free(pMemory);
}
