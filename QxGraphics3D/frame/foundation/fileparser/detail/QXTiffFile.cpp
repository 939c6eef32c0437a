#include <QxGraphics3D/frame/foundation/fileparser/detail/QXTiffFile.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
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
