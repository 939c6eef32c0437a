#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

#include <QxGraphics3D/frame/foundation/stream/detail/QXPastCaches.h>
#include <QxGraphics3D/frame/foundation/stream/detail/QXSwappedArray.h>

#include <string>

namespace QXC {

QXStream::QXStream() = default;
QXStream::~QXStream() = default;

QXStream& QXStream::operator<<(QdcUnicodeString const& strText) {
  QdcMBString const bytes = strText.ToMBString();
  *this << bytes.GetLength();
  if (bytes.GetLength() > 0) PutBytes(bytes.Cstr(), static_cast<std::size_t>(bytes.GetLength()));
  return *this;
}

QXStream& QXStream::operator>>(QdcUnicodeString& strText) {
  strText = QdcUnicodeString();
  QXUInt64 const nStart = GetPosition();
  unsigned int nCount = 0;
  *this >> nCount;
  if (nCount == 0) return *this;
  if (nCount > Remaining()) {
    FailWith(STREAM_ENDED, nStart);
    return *this;
  }
  std::string bytes(nCount, '\0');
  TakeBytes(bytes.data(), nCount);
  strText = QdcUnicodeString::FromUTF8(bytes.c_str());
  return *this;
}

unsigned char QXStream::CanHold(QXInt64 nCount, unsigned int nLeastSize) const {
  if (nCount <= 0) return nCount == 0 ? 1 : 0;
  return nLeastSize == 0 || static_cast<QXUInt64>(nCount) <= Remaining() / nLeastSize ? 1 : 0;
}

QdcUnicodeString QXStream::GetErrorText() const {
  switch (m_eProblem) {
  case STREAM_NO_PROBLEM: return {};
  case STREAM_ENDED: return L"the data ends too early";
  case STREAM_FULL: return L"the room is full";
  case STREAM_NONSENSE: return L"the data makes no sense";
  case STREAM_NO_MEMORY: return L"there is not enough memory";
  case STREAM_NOT_OPEN: return L"it is not open for this";
  case STREAM_NOT_A_FILE: return L"it is no regular file";
  default: return L"the system refused";
  }
}

void QXStream::Reserve(QXUInt64 /*nSize*/) {}

int QXStream::GetStringSize(QdcUnicodeString const& strText) {
  return 4 + strText.ToMBString().GetLength();
}

void QXStream::FailWith(QXStreamProblem eProblem, QXUInt64 nReadPosition) {
  if (!IsGood()) return;
  m_nReadEndOffset = nReadPosition;
  m_nWriteEndOffset = GetWritten();
  // Empty windows send every later operation the slow way, which asks for the failure.
  m_pReadEnd = m_pRead;
  m_pWriteEnd = m_pWrite;
  m_eProblem = eProblem;
}

void QXStream::PutPast(void const* pBytes, std::size_t nSize) {
  if (IsGood()) WritePast(pBytes, nSize);
}

void QXStream::TakePast(void* pBytes, std::size_t nSize) {
  if (IsGood() && ReadPast(pBytes, nSize)) return;
  std::memset(pBytes, 0, nSize);
}

// The window of a file holds none or one such array, so they are those of large blocks in memory.
void QXStream::PutBlock(void const* pBytes, std::size_t nSize) {
  bool const bFits = nSize <= static_cast<std::size_t>(m_pWriteEnd - m_pWrite);
  if (!bFits || nSize < detail::PastCachesArray || m_nWriteEndOffset < detail::PastCachesBlock)
    return PutBytes(pBytes, nSize);
  detail::CopyPastCaches(m_pWrite, pBytes, nSize);
  m_pWrite += nSize;
}

void QXStream::TakeBlock(void* pBytes, std::size_t nSize) {
  bool const bFits = nSize <= static_cast<std::size_t>(m_pReadEnd - m_pRead);
  if (!bFits || nSize < detail::PastCachesArray || m_nReadEndOffset < detail::PastCachesBlock)
    return TakeBytes(pBytes, nSize);
  detail::CopyPastCaches(pBytes, m_pRead, nSize);
  m_pRead += nSize;
}

template <class T>
void QXStream::PutArray(T const* pValues, unsigned int nCount) {
  if (nCount == 0) return;
  if constexpr (qdcbigendian() != 0 && sizeof(T) > 1) {
    detail::ForEachSwapped(
        pValues, nCount, [this](T const* pSwapped, std::size_t nPart) { PutBytes(pSwapped, nPart * sizeof(T)); });
  } else {
    PutBlock(pValues, nCount * sizeof(T));
  }
}

template <class T>
void QXStream::TakeArray(T* pValues, unsigned int nCount) {
  if (nCount == 0) return;
  TakeBlock(pValues, nCount * sizeof(T));
  if constexpr (qdcbigendian() != 0 && sizeof(T) > 1) detail::SwapArray(pValues, nCount);
}

template void QXStream::PutArray(float const*, unsigned int);
template void QXStream::PutArray(int const*, unsigned int);
template void QXStream::PutArray(unsigned int const*, unsigned int);
template void QXStream::PutArray(unsigned short const*, unsigned int);
template void QXStream::PutArray(unsigned char const*, unsigned int);
template void QXStream::TakeArray(float*, unsigned int);
template void QXStream::TakeArray(int*, unsigned int);
template void QXStream::TakeArray(unsigned int*, unsigned int);
template void QXStream::TakeArray(unsigned short*, unsigned int);
template void QXStream::TakeArray(unsigned char*, unsigned int);

}  // namespace QXC
