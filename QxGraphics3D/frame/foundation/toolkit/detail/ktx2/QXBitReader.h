/// @file
/// Reader of bit streams whose first bit is the lowest of the first byte.
#pragma once

#include <cstdint>

namespace QXC::detail {

/// Bits of a byte block, lowest first. Behind the end stand zeros without end, so that a decoder may look ahead.
/// Whoever took some of them learns it from IsPastEnd, which is asked once a row or table instead of once a bit.
class QXBitReader {
public:
  QXBitReader(unsigned char const* pBytes, std::uint64_t nSize) : m_pNext(pBytes), m_nLeft(nSize) {}

  /// Makes at least 56 bits ready, zeros where the block has no more.
  void Refill() {
    if (m_nLeft >= 8) {
      std::uint64_t nWord = Load64(m_pNext);
      m_nBits |= nWord << m_nCount;
      unsigned int const nBytes = (63 - m_nCount) >> 3;
      m_pNext += nBytes;
      m_nLeft -= nBytes;
      m_nCount += nBytes * 8;
      return;
    }
    RefillAtEnd();
  }

  /// The next bits without taking them: as many as the last Refill left.
  std::uint64_t Peek() const { return m_nBits; }

  /// Takes nCount bits, at most what is ready.
  void Skip(unsigned int nCount) {
    m_nBits >>= nCount;
    m_nCount -= nCount;
  }

  /// Takes nCount bits, at most 32, and returns them.
  std::uint32_t Read(unsigned int nCount) {
    if (m_nCount < nCount) Refill();
    std::uint32_t const nValue = static_cast<std::uint32_t>(m_nBits & ((std::uint64_t(1) << nCount) - 1));
    Skip(nCount);
    return nValue;
  }

  /// How many bits are ready.
  unsigned int GetReady() const { return m_nCount; }

  /// Whether more bits were taken than the block has.
  bool IsPastEnd() const { return m_nPadding > m_nCount; }

private:
  static std::uint64_t Load64(unsigned char const* pBytes) {
    std::uint64_t nWord = 0;
    for (unsigned int i = 0; i < 8; ++i) nWord |= std::uint64_t(pBytes[i]) << (8 * i);
    return nWord;
  }

  void RefillAtEnd() {
    while (m_nCount <= 56) {
      if (m_nLeft > 0) {
        m_nBits |= std::uint64_t(*m_pNext++) << m_nCount;
        --m_nLeft;
      } else if (m_nPadding < ms_nMaxPadding) {
        m_nPadding += 8;
      }
      m_nCount += 8;
    }
  }

  // Counted up to here only, far above what can be ready, so that it never wraps.
  static constexpr unsigned int ms_nMaxPadding = 1u << 20;

  unsigned char const* m_pNext;
  std::uint64_t m_nLeft;
  std::uint64_t m_nBits = 0;  ///< above the ready ones it may hold bits that will be read again, equal ones
  unsigned int m_nCount = 0;
  unsigned int m_nPadding = 0;  ///< zeros that were appended
};

}  // namespace QXC::detail
