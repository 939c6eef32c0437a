/// @file
/// A block whose neighbours cannot be touched.
#pragma once

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <new>

namespace QXTest {

/// nBytes bytes between two pages that end the process when they are read or written: wide instructions that reach
/// past a block otherwise go unnoticed. The block touches the page behind it, or the page before it.
class GuardedBlock {
public:
  enum class Side { Behind, Before };

  GuardedBlock(std::size_t nBytes, Side eSide) {
    auto const nPage = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    std::size_t const nInside = (nBytes + nPage - 1) / nPage * nPage;
    m_nMapped = nInside + 2 * nPage;
    void* const pMapped = mmap(nullptr, m_nMapped, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pMapped == MAP_FAILED) throw std::bad_alloc();
    m_pMapped = static_cast<unsigned char*>(pMapped);
    EXPECT_EQ(mprotect(m_pMapped + nPage, nInside, PROT_READ | PROT_WRITE), 0);
    m_pBlock = m_pMapped + nPage + (eSide == Side::Behind ? nInside - nBytes : 0);
  }
  GuardedBlock(GuardedBlock const&) = delete;
  GuardedBlock& operator=(GuardedBlock const&) = delete;
  ~GuardedBlock() { munmap(m_pMapped, m_nMapped); }

  unsigned char* Get() const { return m_pBlock; }

private:
  unsigned char* m_pMapped = nullptr;
  unsigned char* m_pBlock = nullptr;
  std::size_t m_nMapped = 0;
};

}  // namespace QXTest
