#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>

#include <limits>
#include <new>

namespace QXC::detail {

bool QXImageBlock::Make(QXUInt64 nWidth, QXUInt64 nHeight, unsigned int nBytesPerPixel, QXImageLimits const& limits) {
  if (!limits.Allow(nWidth, nHeight, nBytesPerPixel)) return false;
  // A row's bytes are handed out in 32 bits, whatever edge a host allows.
  if (nWidth * nBytesPerPixel > std::numeric_limits<unsigned int>::max()) return false;
  m_pPixels.reset(NewPixelBlock(nWidth * nHeight * nBytesPerPixel));
  if (!m_pPixels) return false;
  m_nWidth = static_cast<unsigned int>(nWidth);
  m_nHeight = static_cast<unsigned int>(nHeight);
  m_nBytesPerPixel = nBytesPerPixel;
  return true;
}

QXImageData* QXImageBlock::HandOver() {
  if (!m_pPixels) return nullptr;
  auto* pImage = new (std::nothrow) QXImageData;
  if (!pImage) return nullptr;
  pImage->m_nWidth = m_nWidth;
  pImage->m_nHeight = m_nHeight;
  pImage->m_nPitch = static_cast<unsigned int>(GetRowBytes());
  pImage->m_nBitDepth = static_cast<unsigned char>(m_nBytesPerPixel * 8);
  pImage->m_pPixels = m_pPixels.release();
  return pImage;
}

}  // namespace QXC::detail
