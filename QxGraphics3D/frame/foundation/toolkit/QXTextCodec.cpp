#include <QxGraphics3D/frame/foundation/toolkit/QXTextCodec.h>

#include <QxGraphics3D/frame/foundation/base/QDCCharset.h>

#include <cstdint>

namespace QXC {

namespace {

std::uint32_t UnitAt(unsigned char const* pUnit) {
  return static_cast<std::uint32_t>(pUnit[0]) << 8 | pUnit[1];
}

bool IsHighSurrogate(std::uint32_t nUnit) {
  return (nUnit & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(std::uint32_t nUnit) {
  return (nUnit & 0xFC00) == 0xDC00;
}

}  // namespace

QXTextCodec::QXTextCodec(int nFrom, int nTo)
    : m_bKnown(static_cast<unsigned char>(nFrom == QDCCharset::UTF16BigEndian && nTo == QDCCharset::UnicodeText)) {}

unsigned char QXTextCodec::Convert(
    wchar_t* pOut, unsigned int nOutLength, unsigned char const* pIn, unsigned int nByteLength) const {
  if (pOut == nullptr || nOutLength == 0) return 0;
  *pOut = L'\0';
  if (!m_bKnown || pIn == nullptr || nByteLength == 0 || nByteLength % 2 != 0) return 0;
  unsigned char const* const pEnd = pIn + nByteLength;
  wchar_t* pNext = pOut;
  while (pIn != pEnd) {
    // The last place belongs to the zero.
    if (static_cast<unsigned int>(pNext - pOut) + 1 == nOutLength) {
      *pOut = L'\0';
      return 0;
    }
    std::uint32_t code = UnitAt(pIn);
    pIn += 2;
    if (IsHighSurrogate(code) && pIn != pEnd && IsLowSurrogate(UnitAt(pIn))) {
      code = 0x10000 + ((code - 0xD800) << 10) + (UnitAt(pIn) - 0xDC00);
      pIn += 2;
    }
    *pNext++ = static_cast<wchar_t>(code);
  }
  *pNext = L'\0';
  return 1;
}

}  // namespace QXC
