#include "QXMemoryMeter.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t Head = 16;
std::size_t g_nLive = 0;
std::size_t g_nPeak = 0;
std::size_t g_nUntilRefusal = 0;
bool g_bRefused = false;

// The size stands before the block.
void* Allocate(std::size_t nSize) noexcept {
  if (g_nUntilRefusal != 0 && (g_bRefused || --g_nUntilRefusal == 0)) {
    g_nUntilRefusal = 1;
    g_bRefused = true;
    return nullptr;
  }
  auto* const pHead = static_cast<std::size_t*>(std::malloc(nSize + Head));
  if (!pHead) return nullptr;
  *pHead = nSize + Head;
  g_nLive += *pHead;
  g_nPeak = std::max(g_nPeak, g_nLive);
  return reinterpret_cast<char*>(pHead) + Head;
}

void Free(void* pMemory) noexcept {
  if (!pMemory) return;
  auto* const pHead = reinterpret_cast<std::size_t*>(static_cast<char*>(pMemory) - Head);
  g_nLive -= *pHead;
  std::free(pHead);
}

}  // namespace

namespace QXTest {

std::size_t GetLiveBytes() {
  return g_nLive;
}
std::size_t GetPeakBytes() {
  return g_nPeak;
}
void ResetPeak() {
  g_nPeak = g_nLive;
}
void RefuseFrom(std::size_t nNumber) {
  g_nUntilRefusal = nNumber;
  g_bRefused = false;
}
bool WasRefused() {
  return g_bRefused;
}

}  // namespace QXTest

void* operator new(std::size_t nSize) {
  if (void* const pMemory = Allocate(nSize)) return pMemory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t nSize) {
  return operator new(nSize);
}
void* operator new(std::size_t nSize, std::nothrow_t const&) noexcept {
  return Allocate(nSize);
}
void* operator new[](std::size_t nSize, std::nothrow_t const&) noexcept {
  return Allocate(nSize);
}
void operator delete(void* pMemory) noexcept {
  Free(pMemory);
}
void operator delete[](void* pMemory) noexcept {
  Free(pMemory);
}
void operator delete(void* pMemory, std::size_t /*nSize*/) noexcept {
  Free(pMemory);
}
void operator delete[](void* pMemory, std::size_t /*nSize*/) noexcept {
  Free(pMemory);
}
// For constructors that throw.
void operator delete(void* pMemory, std::nothrow_t const&) noexcept {
  Free(pMemory);
}
void operator delete[](void* pMemory, std::nothrow_t const&) noexcept {
  Free(pMemory);
}
