#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXStbImage.h>

#include <algorithm>
#include <cstddef>

namespace QXC::detail {
namespace {

constexpr unsigned int HEADER_BYTES = 18;
constexpr unsigned int RLE = 8;
constexpr unsigned int FROM_RIGHT = 0x10;
// Pixels that a run of one count byte and one pixel makes.
constexpr QXUInt64 LONGEST_RUN = 128;

// The bits that a pixel of this kind can have; there are no magic bytes, so that this is what tells a TGA from another
// file.
bool IsKnown(unsigned int nKind, unsigned int nMapType, unsigned int nBits, unsigned int nMapBits) {
  bool const bColour = nBits == 15 || nBits == 16 || nBits == 24 || nBits == 32;
  switch (nKind) {
  case 1:
    return nMapType == 1 && (nBits == 8 || nBits == 16) &&
           (nMapBits == 15 || nMapBits == 16 || nMapBits == 24 || nMapBits == 32);
  case 2: return nMapType == 0 && bColour;
  case 3: return nMapType == 0 && (nBits == 8 || nBits == 16);
  default: return false;
  }
}

// stb_image knows of rows from below, but not of rows from the right.
void TurnRows(QXImageData& image) {
  std::size_t const nPixelBytes = image.m_nBitDepth / 8u;
  auto* pRow = static_cast<unsigned char*>(image.m_pPixels);
  for (unsigned int y = 0; y < image.m_nHeight; ++y, pRow += image.m_nPitch) {
    for (unsigned char *pLeft = pRow, *pRight = pRow + image.m_nPitch - nPixelBytes; pLeft < pRight;
         pLeft += nPixelBytes, pRight -= nPixelBytes) {
      std::swap_ranges(pLeft, pLeft + nPixelBytes, pRight);
    }
  }
}

}  // namespace

QXImageData* ReadTga(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  if (nSize < HEADER_BYTES) return nullptr;
  unsigned int const nType = source.Little(2, 1);
  bool const bRuns = nType > RLE;
  unsigned int const nBits = source.Little(16, 1);
  if (!IsKnown(bRuns ? nType - RLE : nType, source.Little(1, 1), nBits, source.Little(7, 1))) return nullptr;
  QXUInt64 const nWidth = source.Little(12, 2);
  QXUInt64 const nHeight = source.Little(14, 2);
  // No more is made than the bytes could fill.
  QXUInt64 const nPixelBytes = (nBits + 7) / 8;
  if (nWidth * nHeight / (bRuns ? LONGEST_RUN : 1) * nPixelBytes > nSize) return nullptr;
  QXImageData* pImage = DecodeByStb(pBytes, nSize, nWidth, nHeight, limits);
  if (pImage && (source.Little(17, 1) & FROM_RIGHT) != 0) TurnRows(*pImage);
  return pImage;
}

}  // namespace QXC::detail
