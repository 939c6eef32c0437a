#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

namespace QXC {

QXPixelFormatLayout QXPixelFormatLayout::Of(QX3DPixelFormat eFormat) {
  switch (eFormat) {
  case PF_L8: return {1, 0, 0, 0, -1};
  case PF_BYTE_LA: return {2, 0, 0, 0, 1};
  case PF_R8G8B8:
  case PF_B8G8R8: return {3, 2, 1, 0, -1};
  case PF_A8R8G8B8:
  case PF_R8G8B8A8: return {4, 2, 1, 0, 3};
  case PF_A8B8G8R8: return {4, 0, 1, 2, 3};
  case PF_B8G8R8A8: return {4, 1, 2, 3, 0};
  default: return {};
  }
}

unsigned int QXPixelFormatLayout::ReadColor(unsigned char const* pPixel) const {
  if (m_nPixelBytes == 0) return 0;
  unsigned char const nAlpha = m_nAlpha < 0 ? static_cast<unsigned char>(255) : pPixel[m_nAlpha];
  return QDCRGBA(pPixel[m_nRed], pPixel[m_nGreen], pPixel[m_nBlue], nAlpha);
}

}  // namespace QXC
