/// @file
/// Bytes of a file in memory.
#pragma once

#include <QxGraphics3D/Platform.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace QXC::detail {

/// Reads a file in memory from the front. Never past its end.
class QXByteSource {
public:
  QXByteSource(unsigned char const* pBytes, QXUInt64 nSize) : m_pBytes(pBytes), m_nSize(nSize) {}

  QXUInt64 GetSize() const { return m_nSize; }
  QXUInt64 GetPosition() const { return m_nPosition; }
  QXUInt64 GetLeft() const { return m_nSize - m_nPosition; }
  unsigned char const* GetNext() const { return m_pBytes + m_nPosition; }

  /// To a place counted from the front; false, and nothing moves, past the end.
  bool SeekTo(QXUInt64 nPosition) {
    if (nPosition > m_nSize) return false;
    m_nPosition = nPosition;
    return true;
  }
  bool Skip(QXUInt64 nCount) { return nCount <= GetLeft() && SeekTo(m_nPosition + nCount); }

  /// Copies as many bytes as there are, at most nCount, and returns how many.
  std::size_t Read(void* pTarget, std::size_t nCount) {
    auto const nTaken = static_cast<std::size_t>(std::min<QXUInt64>(nCount, GetLeft()));
    if (nTaken > 0) std::memcpy(pTarget, GetNext(), nTaken);
    m_nPosition += nTaken;
    return nTaken;
  }

  /// A number of nCount bytes at a place, the lowest byte first; 0 where bytes are missing.
  unsigned int Little(QXUInt64 nPlace, unsigned int nCount) const {
    unsigned int nValue = 0;
    for (unsigned int i = 0; i < nCount && nPlace + i < m_nSize; ++i) nValue |= unsigned{m_pBytes[nPlace + i]} << 8 * i;
    return nValue;
  }
  /// The same with the highest byte first.
  unsigned int Big(QXUInt64 nPlace, unsigned int nCount) const {
    unsigned int nValue = 0;
    for (unsigned int i = 0; i < nCount && nPlace + i < m_nSize; ++i) nValue = nValue << 8 | m_pBytes[nPlace + i];
    return nValue;
  }
  /// Whether these bytes stand at a place.
  bool Has(QXUInt64 nPlace, std::string_view strMagic) const {
    if (nPlace > m_nSize || m_nSize - nPlace < strMagic.size()) return false;
    return std::memcmp(m_pBytes + nPlace, strMagic.data(), strMagic.size()) == 0;
  }

private:
  unsigned char const* m_pBytes;
  QXUInt64 m_nSize;
  QXUInt64 m_nPosition = 0;
};

}  // namespace QXC::detail
