#include <plugins/ogre/QXOgreTexturePixels.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>
#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

namespace {

static_assert(std::endian::native == std::endian::little, "OGRE names pixels by the bits of a word, not by its bytes");

/// The bytes of a pixel in OGRE's words: OGRE counts its formats otherwise, and names a word from its highest byte on.
Ogre::PixelFormat ToOgre(QXPixelFormatLayout const& layout) {
  bool const bBlueFirst = layout.m_nBlue < layout.m_nRed;
  switch (layout.m_nPixelBytes) {
  case 1: return Ogre::PF_BYTE_L;
  case 2: return Ogre::PF_BYTE_LA;
  case 3: return bBlueFirst ? Ogre::PF_BYTE_BGR : Ogre::PF_BYTE_RGB;
  case 4:
    if (layout.m_nAlpha == 0) return bBlueFirst ? Ogre::PF_R8G8B8A8 : Ogre::PF_B8G8R8A8;
    return bBlueFirst ? Ogre::PF_BYTE_BGRA : Ogre::PF_BYTE_RGBA;
  default: return Ogre::PF_UNKNOWN;
  }
}

/// How the pixels of a block are packed.
struct Packing {
  Ogre::PixelFormat m_eOgre;
  /// Bytes of a pixel, or of a block of 4 x 4.
  std::size_t m_nBytes;
  bool m_bBlocks;
  int m_nAlpha;
};

Packing FindPacking(QXTextureData const& data, bool bBc7) {
  QXPixelFormatLayout layout = QXPixelFormatLayout::Of(data.m_eFormat);
  if (layout.m_nPixelBytes == 0)
    throw std::runtime_error("a texture has the unknown pixel format " + std::to_string(data.m_eFormat));
  if (data.m_nCompression == TEXTURE_COMPRESSION_BLOCK) {
    if (layout.m_nPixelBytes < 3) throw std::runtime_error("blocks of one or two channels are not known");
    bool const bAlpha = layout.m_nPixelBytes == 4;
    return {bAlpha ? Ogre::PF_DXT5 : Ogre::PF_DXT1, bAlpha ? std::size_t{16} : std::size_t{8}, true, -1};
  }
  if (data.m_nCompression != TEXTURE_COMPRESSION_NONE)
    throw std::runtime_error("a texture has the unknown compression " + std::to_string(data.m_nCompression));
  if (bBc7) return {Ogre::PF_BC7_UNORM, 16, true, -1};
  // An image of 8 bits a pixel goes by the code of 4 bytes when it is set as it was read: its length tells.
  std::uint64_t const nCount = std::uint64_t{data.m_nWidth} * data.m_nHeight;
  if (data.m_eFormat == PF_R8G8B8A8 && nCount > 0 && data.GetBlockLength() == nCount)
    layout = QXPixelFormatLayout::Of(PF_L8);
  return {ToOgre(layout), layout.m_nPixelBytes, false, layout.m_nAlpha};
}

std::uint64_t LevelSize(Packing const& packing, unsigned int nWidth, unsigned int nHeight) {
  if (!packing.m_bBlocks) return std::uint64_t{nWidth} * nHeight * packing.m_nBytes;
  return ((std::uint64_t{nWidth} + 3) / 4) * ((std::uint64_t{nHeight} + 3) / 4) * packing.m_nBytes;
}

bool HasTransparentPixels(unsigned char const* pPixels, std::size_t nCount, Packing const& packing) {
  // One pass without a way out early: the compiler makes wide steps of it, and most images are opaque.
  constexpr std::size_t PIECE = 4096;
  unsigned char const* const pAlpha = pPixels + packing.m_nAlpha;
  for (std::size_t nFirst = 0; nFirst < nCount; nFirst += PIECE) {
    std::size_t const nEnd = std::min(nCount, nFirst + PIECE);
    unsigned char nAll = 0xFF;
    for (std::size_t i = nFirst; i < nEnd; ++i) nAll &= pAlpha[i * packing.m_nBytes];
    if (nAll != 0xFF) return true;
  }
  return false;
}

bool IsTransparent(unsigned char const* pPixels, std::uint64_t nSize, Packing const& packing) {
  auto const nCount = static_cast<std::size_t>(nSize / packing.m_nBytes);
  if (packing.m_eOgre == Ogre::PF_BC7_UNORM) return HasTransparentBc7Blocks(pPixels, nCount);
  if (packing.m_eOgre == Ogre::PF_DXT5) return HasTransparentBc3Blocks(pPixels, nCount);
  return packing.m_nAlpha >= 0 && HasTransparentPixels(pPixels, nCount, packing);
}

/// Where each level of a mip table begins. A table that lets levels overlap, as one that was sized but never filled,
/// or was filled for blocks while the image has none, says only how many there are: they then follow each other.
std::vector<std::uint64_t> FindOffsets(QXTexture const& texture, Packing const& packing) {
  QdcArray<unsigned int> const& arrTable = texture.m_arrMipmapOffset;
  std::vector<std::uint64_t> arrTold;
  std::vector<std::uint64_t> arrTight;
  std::uint64_t nTight = 0;
  std::uint64_t nFree = 0;
  unsigned int nWidth = texture.m_TextureData.m_nWidth;
  unsigned int nHeight = texture.m_TextureData.m_nHeight;
  bool bUsable = true;
  for (std::size_t i = 0; i < std::max<std::size_t>(arrTable.GetSize(), 1); ++i) {
    std::uint64_t const nSize = LevelSize(packing, nWidth, nHeight);
    std::uint64_t const nTold = i < arrTable.GetSize() ? arrTable[i] : 0;
    bUsable = bUsable && nTold >= nFree;
    nFree = nTold + nSize;
    arrTold.push_back(nTold);
    arrTight.push_back(nTight);
    nTight += nSize;
    if (nWidth == 1 && nHeight == 1) break;
    nWidth = std::max(nWidth / 2, 1U);
    nHeight = std::max(nHeight / 2, 1U);
  }
  return bUsable ? arrTold : arrTight;
}

QXOgrePixels Describe(QXTextureData const& data, Packing const& packing, std::vector<std::uint64_t> const& arrOffsets) {
  QXOgrePixels pixels;
  pixels.m_eFormat = packing.m_eOgre;
  std::uint64_t const nKnown = data.GetBlockLength();
  unsigned int nWidth = data.m_nWidth;
  unsigned int nHeight = data.m_nHeight;
  for (std::uint64_t const nOffset : arrOffsets) {
    std::uint64_t const nEnd = nOffset + LevelSize(packing, nWidth, nHeight);
    bool const bFirst = pixels.m_arrLevels.empty();
    if (nKnown > 0 && nEnd > nKnown) {
      if (bFirst) throw std::runtime_error("the block of a texture is shorter than its size and format ask for");
      break;
    }
    // Of a block of unknown length only the image itself is believed.
    if (nKnown == 0 && !bFirst) break;
    pixels.m_arrLevels.push_back({nWidth, nHeight, data.m_pPixels + nOffset});
    if (bFirst) pixels.m_bTransparent = IsTransparent(data.m_pPixels + nOffset, nEnd - nOffset, packing);
    nWidth = std::max(nWidth / 2, 1U);
    nHeight = std::max(nHeight / 2, 1U);
  }
  return pixels;
}

void CheckImage(QXTextureData const& data) {
  if (!data.m_pPixels) throw std::runtime_error("a texture without an image cannot be loaded");
  if (data.m_nWidth == 0 || data.m_nHeight == 0) throw std::runtime_error("a texture has an edge of no pixels");
  // Beyond any device, and small enough to count the bytes of.
  if (data.m_nWidth > 1U << 20U || data.m_nHeight > 1U << 20U)
    throw std::runtime_error("a texture of " + std::to_string(data.m_nWidth) + " x " + std::to_string(data.m_nHeight) +
                             " pixels is impossible");
}

/// Bits of a BC7 block, counted from its first byte's lowest.
unsigned int Bits(unsigned char const* pBlock, unsigned int nFirst, unsigned int nCount) {
  unsigned int nResult = 0;
  for (unsigned int i = 0; i < nCount; ++i) {
    unsigned int const nBit = nFirst + i;
    nResult |= (pBlock[nBit / 8] >> nBit % 8 & 1U) << i;
  }
  return nResult;
}

/// Khronos Data Format 1.3, on BPTC: the mode is the number of zeros before the first one; modes 0
/// to 3 have no alpha; 4 and 5 may exchange it with a colour.
bool IsTransparentBc7(unsigned char const* pBlock) {
  int const nMode = std::countr_zero(pBlock[0]);
  if (nMode < 4) return false;
  if (nMode == 4) return Bits(pBlock, 5, 2) != 0 || Bits(pBlock, 38, 12) != 0xFFF;
  if (nMode == 5) return Bits(pBlock, 6, 2) != 0 || Bits(pBlock, 50, 16) != 0xFFFF;
  if (nMode == 6) return Bits(pBlock, 49, 16) != 0xFFFF;
  if (nMode == 7) return Bits(pBlock, 74, 24) != 0xFFFFFF;
  // Reserved: decoders give pixels of zeros.
  return true;
}

}  // namespace

QXOgrePixels DescribePixels(QXTexture const& texture) {
  QXTextureData const& data = texture.m_TextureData;
  CheckImage(data);
  Packing const packing = FindPacking(data, texture.m_bKtx2Flag != 0);
  return Describe(data, packing, FindOffsets(texture, packing));
}

QXOgrePixels DescribePixels(QXTextureData const& data) {
  CheckImage(data);
  return Describe(data, FindPacking(data, false), {0});
}

QXOgrePart CutPart(QXOgreImage const& image, QXOgreRect const& rect, int nSourceWidth) {
  QXOgrePart part;
  bool const bBlocks = Ogre::PixelUtil::isCompressed(image.GetFormat());
  if (bBlocks) part.m_nCellEdge = 4;
  part.m_nCellBytes = bBlocks ? (image.GetFormat() == Ogre::PF_DXT1 ? std::size_t{8} : std::size_t{16})
                              : Ogre::PixelUtil::getNumElemBytes(image.GetFormat());
  if (rect.m_nWidth < 1 || rect.m_nHeight < 1) return part;
  if (bBlocks && (rect.m_nX % 4 != 0 || rect.m_nY % 4 != 0))
    throw std::runtime_error("a part of blocks must begin where a block begins");
  // In 64 bits: a rectangle may begin and end anywhere.
  auto const nEdge = static_cast<std::int64_t>(part.m_nCellEdge);
  auto const cells = [nEdge](std::int64_t nPixels) { return (nPixels + nEdge - 1) / nEdge; };
  std::int64_t const nX = rect.m_nX / nEdge;
  std::int64_t const nY = rect.m_nY / nEdge;
  std::int64_t const nLeft = std::max<std::int64_t>(nX, 0);
  std::int64_t const nTop = std::max<std::int64_t>(nY, 0);
  std::int64_t const nRight = std::min(nX + cells(rect.m_nWidth), cells(image.GetWidth()));
  std::int64_t const nBottom = std::min(nY + cells(rect.m_nHeight), cells(image.GetHeight()));
  if (nLeft >= nRight || nTop >= nBottom) return part;
  part.m_nLeft = static_cast<std::size_t>(nLeft);
  part.m_nTop = static_cast<std::size_t>(nTop);
  part.m_nColumns = static_cast<std::size_t>(nRight - nLeft);
  part.m_nRows = static_cast<std::size_t>(nBottom - nTop);
  part.m_nStep = static_cast<std::size_t>(cells(nSourceWidth)) * part.m_nCellBytes;
  part.m_nFirst =
      static_cast<std::size_t>(nTop - nY) * part.m_nStep + static_cast<std::size_t>(nLeft - nX) * part.m_nCellBytes;
  return part;
}

bool HasTransparentBc7Blocks(unsigned char const* pBlocks, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i)
    if (IsTransparentBc7(pBlocks + 16 * i)) return true;
  return false;
}

bool HasTransparentBc3Blocks(unsigned char const* pBlocks, std::size_t nCount) {
  // Two ends of 255 and the first of them everywhere: what encoders write where there is no alpha.
  static constexpr unsigned char OPAQUE[8] = {0xFF, 0xFF};
  for (std::size_t i = 0; i < nCount; ++i)
    if (std::memcmp(pBlocks + 16 * i, OPAQUE, sizeof(OPAQUE)) != 0) return true;
  return false;
}

}  // namespace QXC
