#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace QXC {

namespace {

/// 0 for depths that are no pixels of whole bytes.
unsigned int GetBytesPerPixel(QXImageData const& image) {
  switch (image.m_nBitDepth) {
  case 8:
  case 80: return 1;
  case 24: return 3;
  case 32: return 4;
  default: return 0;
  }
}

unsigned char HasPixelRows(QXImageData const& image) {
  unsigned int const nBytes = GetBytesPerPixel(image);
  if (nBytes == 0 || image.m_nCompression != 0 || !image.m_pPixels) return 0;
  if (image.m_nWidth == 0 || image.m_nHeight == 0) return 0;
  return std::uint64_t{image.m_nWidth} * nBytes <= image.m_nPitch ? 1 : 0;
}

/// Null when the block or its pitch, which has 32 bits, cannot be.
unsigned char* NewBlock(std::uint64_t nWidth, std::uint64_t nHeight, unsigned int nBytesPerPixel) {
  std::uint64_t const nPitch = nWidth * nBytesPerPixel;
  return nPitch <= UINT32_MAX ? detail::NewPixelBlock(nPitch * nHeight) : nullptr;
}

unsigned char const* GetRow(QXImageData const& image, std::uint64_t nRow) {
  return static_cast<unsigned char const*>(image.m_pPixels) + nRow * image.m_nPitch;
}

void ReplaceBlock(QXImageData& image, unsigned char* pBlock, std::uint32_t nWidth, std::uint32_t nHeight,
    unsigned int nBytesPerPixel) {
  delete[] static_cast<unsigned char*>(image.m_pPixels);
  image.m_pPixels = pBlock;
  image.m_nWidth = nWidth;
  image.m_nHeight = nHeight;
  image.m_nPitch = nWidth * nBytesPerPixel;
  image.m_nBitDepth = static_cast<unsigned char>(8 * nBytesPerPixel);
}

void RepeatPixel(unsigned char const* pPixel, unsigned int nBytesPerPixel, unsigned char* pTarget, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i, pTarget += nBytesPerPixel) std::memcpy(pTarget, pPixel, nBytesPerPixel);
}

void PadRows(QXImageData const& image, unsigned char* pTarget, std::uint32_t nWidth, std::uint32_t nHeight,
    unsigned int nBytesPerPixel) {
  std::size_t const nFilled = std::size_t{image.m_nWidth} * nBytesPerPixel;
  std::size_t const nPitch = std::size_t{nWidth} * nBytesPerPixel;
  for (std::uint64_t i = 0; i < image.m_nHeight; ++i) {
    unsigned char* const pRow = pTarget + i * nPitch;
    std::memcpy(pRow, GetRow(image, i), nFilled);
    RepeatPixel(pRow + nFilled - nBytesPerPixel, nBytesPerPixel, pRow + nFilled, nWidth - image.m_nWidth);
  }
  unsigned char const* const pLast = pTarget + (image.m_nHeight - std::size_t{1}) * nPitch;
  for (std::uint64_t i = image.m_nHeight; i < nHeight; ++i) std::memcpy(pTarget + i * nPitch, pLast, nPitch);
}

}  // namespace

unsigned char QXImgToolkit::ImageDataToRGBA(QXImageData& image, unsigned char nAlpha) {
  if (!HasPixelRows(image)) return 0;
  unsigned int const nBytes = GetBytesPerPixel(image);
  std::size_t const nWidth = image.m_nWidth;
  if (nBytes == 4 && image.m_nPitch == 4 * nWidth) return 1;
  unsigned char* const pBlock = NewBlock(nWidth, image.m_nHeight, 4);
  if (!pBlock) return 0;
  for (std::uint64_t i = 0; i < image.m_nHeight; ++i) {
    unsigned char* const pTarget = pBlock + i * 4 * nWidth;
    if (nBytes == 1) {
      detail::WidenGrayTo4(GetRow(image, i), pTarget, nWidth, nAlpha);
    } else if (nBytes == 3) {
      detail::Widen3To4(GetRow(image, i), pTarget, nWidth, nAlpha);
    } else {
      std::memcpy(pTarget, GetRow(image, i), 4 * nWidth);
    }
  }
  ReplaceBlock(image, pBlock, image.m_nWidth, image.m_nHeight, 4);
  return 1;
}

unsigned char QXImgToolkit::ImageGIFToRGBA(QXImageData& image, unsigned char nAlpha) {
  return ImageDataToRGBA(image, nAlpha);
}

unsigned char QXImgToolkit::ImageDataToPowerOfTwo(
    QXImageData& image, int& nOutWidth, int& nOutHeight, [[maybe_unused]] unsigned char nAlpha) {
  if (!HasPixelRows(image)) return 0;
  unsigned int const nBytes = GetBytesPerPixel(image);
  std::uint32_t const nWidth = QXMathEngine::NextP2(image.m_nWidth);
  std::uint32_t const nHeight = QXMathEngine::NextP2(image.m_nHeight);
  // The picture's edges are handed out as int.
  if (nWidth == 0 || nHeight == 0 || image.m_nWidth > INT32_MAX || image.m_nHeight > INT32_MAX) return 0;
  int const nPictureWidth = static_cast<int>(image.m_nWidth);
  int const nPictureHeight = static_cast<int>(image.m_nHeight);
  if (nWidth != image.m_nWidth || nHeight != image.m_nHeight || image.m_nPitch != std::uint64_t{nWidth} * nBytes) {
    unsigned char* const pBlock = NewBlock(nWidth, nHeight, nBytes);
    if (!pBlock) return 0;
    PadRows(image, pBlock, nWidth, nHeight, nBytes);
    ReplaceBlock(image, pBlock, nWidth, nHeight, nBytes);
  }
  nOutWidth = nPictureWidth;
  nOutHeight = nPictureHeight;
  return 1;
}

}  // namespace QXC
