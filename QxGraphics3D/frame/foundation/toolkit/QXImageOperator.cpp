#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXResample.h>

namespace QXC {

unsigned char QXImageOperator::Scale(unsigned int nBytesPerPixel, unsigned int nWidth, unsigned int nHeight,
    unsigned char* pSource, unsigned int nNewWidth, unsigned int nNewHeight, unsigned char* pTarget) {
  return detail::ResampleImage(nBytesPerPixel, {pSource, nWidth, nHeight}, pTarget, nNewWidth, nNewHeight);
}

}  // namespace QXC
