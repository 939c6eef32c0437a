#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>

#include <utility>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

namespace QXC {

QXTextureDataAnimation::QXTextureDataAnimation(
    std::vector<QXTextureData> arrFrames, std::vector<unsigned int> arrDelays)
    : m_arrFrames(std::move(arrFrames)), m_arrDelays(std::move(arrDelays)) {
  // One delay a frame, so that whoever walks the frames never asks for a delay that is not there.
  m_arrDelays.resize(m_arrFrames.size());
}

QXTextureDataAnimation::QXTextureDataAnimation(QXTextureDataAnimation const& other) = default;
QXTextureDataAnimation& QXTextureDataAnimation::operator=(QXTextureDataAnimation const& other) = default;
QXTextureDataAnimation::~QXTextureDataAnimation() = default;

QXTextureDataAnimation* QXTextureDataAnimation::Clone() const {
  return new QXTextureDataAnimation(*this);
}

int QXTextureDataAnimation::GetNumFrame() const {
  return static_cast<int>(m_arrFrames.size());
}

QXTextureData& QXTextureDataAnimation::GetFrameDataByIndex(int nIndex) {
  if (nIndex < 0 || nIndex >= GetNumFrame()) {
    QdcThrowInvalidSubscript();
  }
  return m_arrFrames[static_cast<std::size_t>(nIndex)];
}

QXTextureData const& QXTextureDataAnimation::GetFrameDataByIndex(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetNumFrame()) {
    QdcThrowInvalidSubscript();
  }
  return m_arrFrames[static_cast<std::size_t>(nIndex)];
}

unsigned int QXTextureDataAnimation::GetFrameTimeByIndex(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetNumFrame()) {
    QdcThrowInvalidSubscript();
  }
  return m_arrDelays[static_cast<std::size_t>(nIndex)];
}

}  // namespace QXC
