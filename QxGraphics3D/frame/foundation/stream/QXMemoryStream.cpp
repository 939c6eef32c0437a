#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

namespace QXC {

namespace {

constexpr QXUInt64 SmallestBlock = 256;

}  // namespace

QXMemoryStream::QXMemoryStream() : m_bOwned(1) {}

QXMemoryStream::QXMemoryStream(void const* pBytes, QXUInt64 nSize)
    // Never written to: the window for writing stays empty.
    : m_pData(static_cast<unsigned char*>(const_cast<void*>(pBytes))), m_nCapacity(pBytes ? nSize : 0), m_bConstant(1) {
  Rewind();
}

QXMemoryStream::QXMemoryStream(Room const& room)
    : m_pData(static_cast<unsigned char*>(room.m_pBytes)), m_nCapacity(room.m_pBytes ? room.m_nSize : 0) {
  Rewind();
}

QXMemoryStream::~QXMemoryStream() {
  if (m_bOwned != 0) std::free(m_pData);
}

void QXMemoryStream::Reserve(QXUInt64 nSize) {
  if (m_bOwned != 0 && IsGood() && nSize > m_nCapacity) Grow(nSize);
}

void QXMemoryStream::Rewind() {
  QXUInt64 const nWritten = GetWritten();
  Recover();
  m_pRead = m_pData;
  m_nReadEndOffset = GetSize();
  m_pReadEnd = m_pData + m_nReadEndOffset;
  if (m_bConstant != 0) return;
  m_pWrite = m_pData + nWritten;
  m_pWriteEnd = m_pData + m_nCapacity;
  m_nWriteEndOffset = m_nCapacity;
}

QXUInt64 QXMemoryStream::GetReadEnd() const {
  return GetSize();
}

unsigned char QXMemoryStream::ReadPast(void* pBytes, std::size_t nSize) {
  if (nSize > Remaining()) {
    FailWith(STREAM_ENDED);
    return 0;
  }
  // Writing has gone on since the window was set.
  QXUInt64 const nPosition = GetPosition();
  m_nReadEndOffset = GetSize();
  m_pRead = m_pData + nPosition;
  m_pReadEnd = m_pData + m_nReadEndOffset;
  std::memcpy(pBytes, m_pRead, nSize);
  m_pRead += nSize;
  return 1;
}

unsigned char QXMemoryStream::WritePast(void const* pBytes, std::size_t nSize) {
  if (m_bOwned == 0) {
    FailWith(m_bConstant != 0 ? STREAM_NOT_OPEN : STREAM_FULL);
    return 0;
  }
  if (!Grow(std::max({GetWritten() + nSize, m_nCapacity * 2, SmallestBlock}))) {
    FailWith(STREAM_NO_MEMORY);
    return 0;
  }
  std::memcpy(m_pWrite, pBytes, nSize);
  m_pWrite += nSize;
  return 1;
}

/// 0 if there is no memory; all is then as it was. With realloc: a large block then moves by its page tables and is not
/// copied.
unsigned char QXMemoryStream::Grow(QXUInt64 nCapacity) {
  QXUInt64 const nWritten = GetWritten();
  QXUInt64 const nPosition = GetPosition();
  // No block is longer than pointers can tell apart.
  bool const bPossible = nCapacity <= static_cast<QXUInt64>(std::numeric_limits<std::ptrdiff_t>::max());
  void* const pNew = bPossible ? std::realloc(m_pData, static_cast<std::size_t>(nCapacity)) : nullptr;
  if (!pNew) return 0;
  m_pData = static_cast<unsigned char*>(pNew);
  m_nCapacity = nCapacity;
  m_pWrite = m_pData + nWritten;
  m_pWriteEnd = m_pData + nCapacity;
  m_nWriteEndOffset = nCapacity;
  m_pRead = m_pData + nPosition;
  m_pReadEnd = m_pData + nWritten;
  m_nReadEndOffset = nWritten;
  return 1;
}

}  // namespace QXC
