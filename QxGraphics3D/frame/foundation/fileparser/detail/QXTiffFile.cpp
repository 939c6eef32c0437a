#include <QxGraphics3D/frame/foundation/fileparser/detail/QXTiffFile.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <limits>

namespace QXC::detail {
namespace {

// What libtiff needs of itself for a small picture, however small the limit.
constexpr QXUInt64 LEAST_CHUNK_BYTES = 16u << 20;

QXByteSource& SourceOf(thandle_t pHandle) {
  return *static_cast<QXByteSource*>(pHandle);
}

tmsize_t OnRead(thandle_t pHandle, void* pTarget, tmsize_t nCount) {
  if (nCount <= 0) return 0;
  return static_cast<tmsize_t>(SourceOf(pHandle).Read(pTarget, static_cast<std::size_t>(nCount)));
}

tmsize_t OnWrite(thandle_t /*pHandle*/, void* /*pBytes*/, tmsize_t /*nCount*/) {
  return 0;
}

toff_t OnSeek(thandle_t pHandle, toff_t nOffset, int nWhence) {
  QXByteSource& source = SourceOf(pHandle);
  QXUInt64 nPlace = nOffset;
  if (nWhence == SEEK_CUR) nPlace += source.GetPosition();
  if (nWhence == SEEK_END) nPlace += source.GetSize();
  return source.SeekTo(nPlace) ? nPlace : std::numeric_limits<toff_t>::max();
}

int OnClose(thandle_t /*pHandle*/) {
  return 0;
}

toff_t OnSize(thandle_t pHandle) {
  return SourceOf(pHandle).GetSize();
}

// 1: no other handler is asked, least of all the one that prints.
int OnMessage(TIFF* /*pTiff*/, void* /*pUser*/, char const* /*szModule*/, char const* /*szFormat*/, std::va_list) {
  return 1;
}

// Bytes of one value of a tag; 0 for types that nobody knows.
QXUInt64 TypeBytes(unsigned int nType) {
  constexpr unsigned char BYTES[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
  return nType < std::size(BYTES) ? BYTES[nType] : 0;
}

// Numbers in the byte order of the file.
class Numbers {
public:
  explicit Numbers(QXByteSource const& source) : m_Source(source), m_bBig(source.Has(0, "MM")) {}

  QXUInt64 Get(QXUInt64 nPlace, unsigned int nBytes) const {
    if (nBytes <= 4) return m_bBig ? m_Source.Big(nPlace, nBytes) : m_Source.Little(nPlace, nBytes);
    QXUInt64 const nFirst = Get(nPlace, 4), nSecond = Get(nPlace + 4, 4);
    return m_bBig ? nFirst << 32 | nSecond : nSecond << 32 | nFirst;
  }

private:
  QXByteSource const& m_Source;
  bool m_bBig;
};

int ReadExtra(TIFF* pTiff, QXTiffPage const& page) {
  if (page.m_nSamples <= page.GetColourSamples()) return -1;
  std::uint16_t nExtras = 0;
  std::uint16_t* pExtras = nullptr;
  if (TIFFGetField(pTiff, TIFFTAG_EXTRASAMPLES, &nExtras, &pExtras) && nExtras > 0) return pExtras[0];
  return EXTRASAMPLE_UNSPECIFIED;
}

}  // namespace

QXUInt64 QXTiffFile::MaxChunkBytes(QXImageLimits const& limits) {
  return std::max(LEAST_CHUNK_BYTES, std::min<QXUInt64>(limits.m_nMaxBytes, 1ULL << 60) * 2);
}

QXTiffFile::QXTiffFile(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits)
    : m_Source(pBytes, nSize) {
  TIFFOpenOptions* pOptions = TIFFOpenOptionsAlloc();
  if (!pOptions) return;
  TIFFOpenOptionsSetMaxSingleMemAlloc(pOptions, static_cast<tmsize_t>(MaxChunkBytes(limits)));
  TIFFOpenOptionsSetErrorHandlerExtR(pOptions, OnMessage, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(pOptions, OnMessage, nullptr);
  // m: read through the procedures, which check; a mapped file is read without them.
  m_pTiff =
      TIFFClientOpenExt("", "rm", &m_Source, OnRead, OnWrite, OnSeek, OnClose, OnSize, nullptr, nullptr, pOptions);
  TIFFOpenOptionsFree(pOptions);
}

QXTiffFile::~QXTiffFile() {
  if (m_pTiff) TIFFClose(m_pTiff);
}

bool QXTiffFile::HasWholeDirectory() const {
  Numbers const numbers(m_Source);
  QXUInt64 const nSize = m_Source.GetSize();
  bool const bWide = numbers.Get(2, 2) == 43;  // offsets of 64 bits
  unsigned int const nWord = bWide ? 8 : 4;
  QXUInt64 const nStart = numbers.Get(bWide ? 8 : 4, nWord);
  unsigned int const nCountBytes = bWide ? 8 : 2, nEntryBytes = bWide ? 20 : 12;
  if (nStart > nSize || nSize - nStart < nCountBytes) return false;
  QXUInt64 const nEntries = numbers.Get(nStart, nCountBytes);
  if (nEntries > (nSize - nStart - nCountBytes) / nEntryBytes) return false;
  for (QXUInt64 i = 0; i < nEntries; ++i) {
    QXUInt64 const nEntry = nStart + nCountBytes + i * nEntryBytes;
    QXUInt64 const nBytes = TypeBytes(static_cast<unsigned int>(numbers.Get(nEntry + 2, 2)));
    QXUInt64 const nCount = numbers.Get(nEntry + 4, nWord);
    if (nBytes == 0 || nCount <= nWord / nBytes) continue;
    QXUInt64 const nPlace = numbers.Get(nEntry + 4 + nWord, nWord);
    if (nPlace > nSize || nCount > (nSize - nPlace) / nBytes) return false;
  }
  return true;
}

bool QXTiffFile::ReadPage(QXTiffPage& page) const {
  if (!TIFFGetField(m_pTiff, TIFFTAG_IMAGEWIDTH, &page.m_nWidth)) return false;
  if (!TIFFGetField(m_pTiff, TIFFTAG_IMAGELENGTH, &page.m_nHeight)) return false;
  TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_BITSPERSAMPLE, &page.m_nBits);
  TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_SAMPLESPERPIXEL, &page.m_nSamples);
  TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_PLANARCONFIG, &page.m_nPlanar);
  TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_SAMPLEFORMAT, &page.m_nSampleFormat);
  TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_ORIENTATION, &page.m_nOrientation);
  if (!TIFFGetField(m_pTiff, TIFFTAG_PHOTOMETRIC, &page.m_nPhotometric)) return false;
  page.m_nExtra = ReadExtra(m_pTiff, page);
  page.m_bTiled = TIFFIsTiled(m_pTiff) != 0;
  return true;
}

}  // namespace QXC::detail
