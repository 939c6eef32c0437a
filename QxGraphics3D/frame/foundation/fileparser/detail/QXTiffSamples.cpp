#include <QxGraphics3D/frame/foundation/fileparser/detail/QXTiffSamples.h>

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXRedBlue.h>

#include <algorithm>
#include <cstring>

namespace QXC::detail {

bool QXTiffSamples::Init(TIFF* pTiff, QXTiffPage const& page) {
  m_Page = page;
  bool const bPalette = page.m_nPhotometric == PHOTOMETRIC_PALETTE;
  if (!page.HasPlainColours()) return false;
  if (page.m_nBits < 1 || page.m_nBits > 16) return false;
  m_nColours = page.GetColourSamples();
  if (page.m_nSamples < m_nColours) return false;
  bool const bSeparate = page.m_nPlanar == PLANARCONFIG_SEPARATE;
  m_nPlanes = bSeparate ? m_nColours + (page.HasAlpha() ? 1 : 0) : 1;
  m_nStride = bSeparate ? 1 : page.m_nSamples;
  m_nMax = (1u << page.m_nBits) - 1;
  m_nBytesPerPixel = page.HasAlpha() ? 4 : page.IsGrey() ? 1 : 3;
  if (page.m_nBits < 16) m_arrNarrow.resize(std::size_t{m_nMax} + 1);
  for (unsigned int i = 0; i < m_arrNarrow.size(); ++i) {
    m_arrNarrow[i] = static_cast<unsigned char>((i * 255u + m_nMax / 2) / m_nMax);
  }
  m_bPlainBytes = page.m_nBits == 8 && !bSeparate && !bPalette && page.m_nPhotometric != PHOTOMETRIC_MINISWHITE &&
                  (!page.HasAlpha() || page.m_nExtra == EXTRASAMPLE_UNASSALPHA);
  return !bPalette || ReadPalette(pTiff);
}

// Entries have 16 bits. Some writers put 8 there, which shows in no entry being larger; others put 8 into the upper
// ones and leave the lower ones 0, where white would not be reached.
bool QXTiffSamples::ReadPalette(TIFF* pTiff) {
  std::uint16_t* arrMaps[3] = {};
  if (!TIFFGetField(pTiff, TIFFTAG_COLORMAP, &arrMaps[0], &arrMaps[1], &arrMaps[2])) return false;
  std::size_t const nEntries = std::size_t{m_nMax} + 1;
  unsigned int nUpper = 0, nLower = 0;
  for (auto const* pMap : arrMaps) {
    for (std::size_t i = 0; i < nEntries; ++i) {
      nUpper |= pMap[i] >> 8;
      nLower |= pMap[i] & 255u;
    }
  }
  m_arrPalette.resize(nEntries * 3);
  for (std::size_t i = 0; i < nEntries; ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      unsigned int const nValue = arrMaps[2 - c][i];
      m_arrPalette[i * 3 + c] = nUpper == 0   ? static_cast<unsigned char>(nValue)
                                : nLower == 0 ? static_cast<unsigned char>(nValue >> 8)
                                              : NarrowChannel(nValue);
    }
  }
  return true;
}

// Rows begin at whole bytes; within a row samples follow each other with the highest bit first, but those of 16 bits,
// which the codec has brought into the order of this machine.
unsigned int QXTiffSamples::Sample(
    unsigned char const* const* arrPlanes, std::size_t nPixel, unsigned int nSample) const {
  bool const bSeparate = m_nPlanes > 1;
  unsigned char const* pRow = arrPlanes[bSeparate ? nSample : 0];
  std::size_t const nIndex = nPixel * m_nStride + (bSeparate ? 0 : nSample);
  if (m_Page.m_nBits == 8) return pRow[nIndex];
  if (m_Page.m_nBits == 16) {
    std::uint16_t nValue;
    std::memcpy(&nValue, pRow + nIndex * 2, 2);
    return nValue;
  }
  // At most 16 bits that begin within the first of three bytes.
  std::size_t const nBit = nIndex * m_Page.m_nBits;
  unsigned char const* pSample = pRow + nBit / 8;
  unsigned int const nWindow = pSample[0] * 0x10000u + pSample[1] * 0x100u + pSample[2];
  return nWindow >> (24 - m_Page.m_nBits - nBit % 8) & m_nMax;
}

unsigned char QXTiffSamples::Narrow(unsigned int nValue) const {
  if (m_nMax == 255) return static_cast<unsigned char>(nValue);
  return m_nMax == 65535 ? NarrowChannel(nValue) : m_arrNarrow[nValue];
}

void QXTiffSamples::ConvertPixel(
    unsigned char const* const* arrPlanes, std::size_t nPixel, unsigned char* pPixel) const {
  unsigned int const nAlpha = m_Page.HasAlpha() ? Sample(arrPlanes, nPixel, m_nColours) : m_nMax;
  bool const bMultiplied = m_Page.m_nExtra == EXTRASAMPLE_ASSOCALPHA;
  auto const Colour = [&](unsigned int nSample) {
    unsigned int nValue = Sample(arrPlanes, nPixel, nSample);
    // Divided before the bits are narrowed: the colours of thin alpha have few bits to lose. In 16 bits the product
    // stays inside 32.
    if (bMultiplied) nValue = nAlpha == 0 ? 0 : std::min(m_nMax, (nValue * m_nMax + nAlpha / 2) / nAlpha);
    return nValue;
  };
  if (!m_arrPalette.empty()) {
    std::memcpy(pPixel, m_arrPalette.data() + std::size_t{Sample(arrPlanes, nPixel, 0)} * 3, 3);
  } else if (m_Page.IsGrey()) {
    unsigned int const nGrey = Colour(0);
    std::memset(pPixel, Narrow(m_Page.m_nPhotometric == PHOTOMETRIC_MINISWHITE ? m_nMax - nGrey : nGrey),
        std::min(m_nBytesPerPixel, 3u));
  } else {
    for (unsigned int c = 0; c < 3; ++c) pPixel[2 - c] = Narrow(Colour(c));
  }
  if (m_nBytesPerPixel == 4) pPixel[3] = Narrow(nAlpha);
}

// Bytes that need only be put in order: nearly every file.
void QXTiffSamples::ConvertBytes(unsigned char const* pSource, unsigned char* pRow, std::size_t nCount) const {
  if (m_nBytesPerPixel == 1 && m_nStride == 1) {
    std::memcpy(pRow, pSource, nCount);
    return;
  }
  if (m_nBytesPerPixel == m_nStride && m_nColours == 3) {
    (m_nStride == 3 ? CopySwapped3 : CopySwapped4)(pSource, pRow, nCount);
    return;
  }
  unsigned int const nRed = 0, nGreen = m_nColours == 3 ? 1 : 0, nBlue = m_nColours == 3 ? 2 : 0;
  for (std::size_t i = 0; i < nCount; ++i, pSource += m_nStride, pRow += m_nBytesPerPixel) {
    pRow[0] = pSource[nBlue];
    if (m_nBytesPerPixel == 1) continue;
    pRow[1] = pSource[nGreen];
    pRow[2] = pSource[nRed];
    if (m_nBytesPerPixel == 4) pRow[3] = pSource[m_nColours];
  }
}

// Values that stand alone: grey and indexes.
void QXTiffSamples::ConvertValues(
    unsigned char const* const* arrPlanes, unsigned char* pRow, std::size_t nCount) const {
  unsigned int const nFlip = m_Page.m_nPhotometric == PHOTOMETRIC_MINISWHITE ? m_nMax : 0;
  if (m_arrPalette.empty()) {
    for (std::size_t i = 0; i < nCount; ++i) pRow[i] = Narrow(Sample(arrPlanes, i, 0) ^ nFlip);
    return;
  }
  for (std::size_t i = 0; i < nCount; ++i, pRow += 3) {
    std::memcpy(pRow, m_arrPalette.data() + std::size_t{Sample(arrPlanes, i, 0)} * 3, 3);
  }
}

void QXTiffSamples::Convert(unsigned char const* const* arrPlanes, unsigned char* pRow, std::size_t nCount) const {
  if (m_bPlainBytes) {
    ConvertBytes(arrPlanes[0], pRow, nCount);
    return;
  }
  if (m_nColours == 1 && !m_Page.HasAlpha()) {
    ConvertValues(arrPlanes, pRow, nCount);
    return;
  }
  for (std::size_t i = 0; i < nCount; ++i) ConvertPixel(arrPlanes, i, pRow + i * m_nBytesPerPixel);
}

}  // namespace QXC::detail
