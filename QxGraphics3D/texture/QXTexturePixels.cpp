#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelSize.h>
#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {
namespace {

constexpr unsigned int ALPHA = 3;  // place of the alpha byte in a pixel of 4

// Whether the image has pixels, and a block not known to be shorter than that many bytes for each of them.
bool Holds(QXTextureData const& data, unsigned int nPixelSize) {
  if (data.m_pPixels == nullptr) {
    return false;
  }
  QXUInt64 const nKnown = data.GetBlockLength();
  return nKnown == 0 || nKnown / nPixelSize >= QXUInt64{data.m_nWidth} * data.m_nHeight;
}

// Bytes of the block that an image record brings, 0 for unknown. Padded rows count in full.
QXUInt64 GetImageBlockLength(QXImageData const& image) {
  if (image.m_nBitDepth == IMAGE_BIT_DEPTH_RAW || image.m_nCompression == TEXTURE_COMPRESSION_RAW) {
    return image.m_nPitch;
  }
  switch (image.m_nCompression) {
  case TEXTURE_COMPRESSION_BLOCK:
  case TEXTURE_COMPRESSION_BLOCK_ALPHA:
  case TEXTURE_COMPRESSION_BLOCK_ALPHA_SMOOTH:
    return detail::BlockImageSize(image.m_nWidth, image.m_nHeight, image.m_nBitDepth == 24 ? 8 : 16);
  default: break;
  }
  unsigned int const nPixelSize = image.m_nBitDepth == 80 ? 1 : image.m_nBitDepth / 8U;
  QXUInt64 const nRow = QXUInt64{image.m_nWidth} * nPixelSize;
  return (nRow > image.m_nPitch ? nRow : image.m_nPitch) * image.m_nHeight;
}

// Whole pixels of 4 bytes only, and none past the end of a block whose length is known.
unsigned char HasTransparentPixel(QXTextureData const& data) {
  if (data.m_pPixels == nullptr) {
    return 0;
  }
  QXUInt64 const nCount = QXUInt64{data.m_nWidth} * data.m_nHeight;
  QXUInt64 const nKnown = data.GetBlockLength();
  return detail::HasAlphaBelow255(data.m_pPixels, nKnown != 0 ? std::min(nCount, nKnown / 4) : nCount);
}

unsigned char HasTransparency(QXTextureData const& data, unsigned char nBitDepth) {
  switch (data.m_nCompression) {
  case TEXTURE_COMPRESSION_BLOCK: return static_cast<unsigned char>(nBitDepth == 32);
  case TEXTURE_COMPRESSION_BLOCK_ALPHA:
  case TEXTURE_COMPRESSION_BLOCK_ALPHA_SMOOTH: return 1;
  default: return HasTransparentPixel(data);
  }
}

void ReplaceBlock(QXTextureData& data, unsigned char* pPixels, QXUInt64 nLength) {
  data.Release();
  data.m_pPixels = pPixels;
  data.SetBlockLength(nLength);
  if (data.m_nDataSize != 0) {
    data.m_nDataSize = static_cast<unsigned int>(nLength);
  }
}

// Gray or 3-byte pixels to 4 bytes with alpha 255. 0 if the block is not there or too short.
unsigned char WidenForEdges(QXTextureData& data) {
  unsigned int const nPixelSize = detail::RowPixelSize(data.m_eFormat);
  if (!Holds(data, nPixelSize)) {
    return 0;
  }
  if (nPixelSize == 4) {
    return 1;
  }
  QXUInt64 const nCount = QXUInt64{data.m_nWidth} * data.m_nHeight;
  auto* const pWide = detail::NewPixelBlock(nCount * 4);
  if (pWide == nullptr) {
    throw std::bad_alloc();
  }
  if (nPixelSize == 1) {
    detail::WidenGrayTo4(data.m_pPixels, pWide, nCount, 255);
  } else {
    detail::Widen3To4(data.m_pPixels, pWide, nCount, 255);
  }
  ReplaceBlock(data, pWide, nCount * 4);
  data.m_eFormat = PF_A8R8G8B8;
  return 1;
}

}  // namespace

void QXTexture::SetTextureData(QXTextureData const& data) {
  m_TextureData = data;
  m_bLoadedImage = 1;
}

void QXTexture::SetTextureData(
    int nWidth, int nHeight, unsigned char* pPixels, unsigned int nCompression, QX3DPixelFormat eFormat) {
  // The caller may hand the texture's own block back: then it is neither freed nor forgotten how long it is.
  if (m_TextureData.m_pPixels != pPixels) {
    m_TextureData.Release();
    m_TextureData.m_pPixels = pPixels;
    m_TextureData.SetBlockLength(0);
    // It was told of the former block; a caller who knows that of the new one tells it after this.
    m_TextureData.m_nDataSize = 0;
  }
  m_TextureData.m_nWidth = static_cast<unsigned int>(nWidth);
  m_TextureData.m_nHeight = static_cast<unsigned int>(nHeight);
  m_TextureData.m_nCompression = nCompression;
  m_TextureData.m_eFormat = eFormat;
  m_bLoadedImage = 1;
}

void QXTexture::SetTextureData(QXTextureData const* pData) {
  if (pData == nullptr) {
    return;
  }
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_TextureData = *pData;
  m_bLoadedImage = 1;
}

unsigned char QXTexture::SetTextureData(
    QXImageData*& pImage, int nFirst, int nSecond, int nThird, unsigned char bScanAlpha) {
  if (pImage == nullptr) {
    return 0;
  }
  std::unique_ptr<QXImageData> const pRecord(pImage);
  pImage = nullptr;
  if (m_TextureData.m_pPixels != pRecord->m_pPixels) {
    m_TextureData.Release();
    m_TextureData.m_nDataSize = 0;
  }
  m_TextureData.m_pPixels = static_cast<unsigned char*>(pRecord->m_pPixels);
  m_TextureData.m_nWidth = pRecord->m_nWidth;
  m_TextureData.m_nHeight = pRecord->m_nHeight;
  m_TextureData.m_nCompression = pRecord->m_nCompression;
  m_TextureData.m_eFormat = pRecord->m_nBitDepth == 24 ? PF_B8G8R8 : PF_R8G8B8A8;
  m_TextureData.SetBlockLength(GetImageBlockLength(*pRecord));
  if (bScanAlpha) {
    m_bHasTransparentData = HasTransparency(m_TextureData, pRecord->m_nBitDepth);
  }
  m_nRegionValues[0] = nFirst;
  m_nRegionValues[1] = nSecond;
  m_nRegionValues[2] = nThird;
  m_bLoadedImage = 1;
  return 1;
}

void QXTexture::FlipTexture() {
  unsigned int const nPixelSize = detail::RowPixelSize(m_TextureData.m_eFormat);
  if (!Holds(m_TextureData, nPixelSize) || m_TextureData.m_nHeight < 2) {
    return;
  }
  detail::FlipRows(m_TextureData.m_pPixels, std::size_t{m_TextureData.m_nWidth} * nPixelSize, m_TextureData.m_nHeight);
}

void QXTexture::ScaleImage(int nNewWidth, int nNewHeight) {
  unsigned int const nPixelSize = detail::RowPixelSize(m_TextureData.m_eFormat);
  if (nNewWidth < 1 || nNewHeight < 1 || !Holds(m_TextureData, nPixelSize)) {
    m_bLoadedImage = 0;
    return;
  }
  QXUInt64 const nLength = static_cast<QXUInt64>(nNewWidth) * static_cast<QXUInt64>(nNewHeight) * nPixelSize;
  std::unique_ptr<unsigned char[]> pScaled(detail::NewPixelBlock(nLength));
  // An edge past the largest int turns negative, which the resampling refuses, as it does an edge of 0.
  if (pScaled == nullptr || !QXMathEngine::ScaleImageInternal(static_cast<int>(nPixelSize),
                                static_cast<int>(m_TextureData.m_nWidth), static_cast<int>(m_TextureData.m_nHeight),
                                m_TextureData.m_pPixels, nNewWidth, nNewHeight, pScaled.get(), -1)) {
    m_bLoadedImage = 0;
    return;
  }
  ReplaceBlock(m_TextureData, pScaled.release(), nLength);
  m_TextureData.m_nWidth = static_cast<unsigned int>(nNewWidth);
  m_TextureData.m_nHeight = static_cast<unsigned int>(nNewHeight);
}

void QXTexture::SetEdgeTransparency() {
  QXUInt64 const nWidth = m_TextureData.m_nWidth;
  QXUInt64 const nHeight = m_TextureData.m_nHeight;
  if (!WidenForEdges(m_TextureData) || nWidth == 0 || nHeight == 0) {
    return;
  }
  unsigned char* const pAlpha = m_TextureData.m_pPixels + ALPHA;
  for (QXUInt64 nColumn = 0; nColumn < nWidth; ++nColumn) {
    pAlpha[nColumn * 4] = 0;
    pAlpha[((nHeight - 1) * nWidth + nColumn) * 4] = 0;
  }
  for (QXUInt64 nRow = 0; nRow < nHeight; ++nRow) {
    pAlpha[nRow * nWidth * 4] = 0;
    pAlpha[(nRow * nWidth + nWidth - 1) * 4] = 0;
  }
}

void QXTexture::SetTranseparentPixelColor() {
  if (m_TextureData.m_eFormat != PF_A8R8G8B8 || !Holds(m_TextureData, 4)) {
    return;
  }
  unsigned char colour[3] = {};
  QXUInt64 const nCount = QXUInt64{m_TextureData.m_nWidth} * m_TextureData.m_nHeight;
  for (QXUInt64 nPixel = 0; nPixel < nCount; ++nPixel) {
    unsigned char* const pPixel = m_TextureData.m_pPixels + nPixel * 4;
    if (pPixel[ALPHA] == 0) {
      std::memcpy(pPixel, colour, 3);
    } else if ((pPixel[0] | pPixel[1] | pPixel[2]) != 0) {
      std::memcpy(colour, pPixel, 3);
    }
  }
}

}  // namespace QXC
