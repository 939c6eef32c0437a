#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2Decoder.h>

#include <memory>

namespace QXC::detail {

QXImageData* ReadKtx2(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXKtx2Limits const fileLimits{limits.m_nMaxEdge, limits.m_nMaxBytes};
  QXKtx2File file;
  if (!file.Open(pBytes, nSize, fileLimits) || file.GetEncoding() == QXKtx2Encoding::Bc7) return nullptr;
  std::unique_ptr<unsigned char[]> pPixels = DecodeKtx2Levels(file, 1, fileLimits);
  if (pPixels == nullptr) return nullptr;
  SwapRedBlue4(pPixels.get(), std::size_t{file.GetWidth()} * file.GetHeight());

  auto* const pImage = new QXImageData;
  pImage->m_nWidth = file.GetWidth();
  pImage->m_nHeight = file.GetHeight();
  pImage->m_nPitch = file.GetWidth() * 4;
  pImage->m_nBitDepth = 32;
  pImage->m_pPixels = pPixels.release();
  return pImage;
}

}  // namespace QXC::detail
