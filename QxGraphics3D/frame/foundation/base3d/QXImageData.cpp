#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include <cstring>
#include <memory>

#include <QxGraphics3D/Platform.h>

namespace QXC {

QXImageData::~QXImageData() = default;

QXImageData* QXImageData::Clone() const {
  auto pClone = std::make_unique<QXImageData>(*this);
  if (m_pPixels != nullptr) {
    QXUInt64 const nRows = m_nBitDepth == IMAGE_BIT_DEPTH_RAW ? 1 : m_nHeight;
    QXUInt64 const nLength = m_nPitch * nRows;
    pClone->m_pPixels = new unsigned char[nLength];
    std::memcpy(pClone->m_pPixels, m_pPixels, nLength);
  }
  return pClone.release();
}

}  // namespace QXC
