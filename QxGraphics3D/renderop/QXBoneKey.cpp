#include <QxGraphics3D/renderop/QXBoneKey.h>

#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

namespace QXC {

QXBoneKey::QXBoneKey() = default;
QXBoneKey::QXBoneKey(QXBoneKey const& other) = default;
QXBoneKey& QXBoneKey::operator=(QXBoneKey const& other) = default;
QXBoneKey::~QXBoneKey() = default;

unsigned char QXBoneKey::Load(QXStream& stream) {
  QXBoneKey key;
  stream >> key.m_dTime >> key.m_vecPosition.x >> key.m_vecPosition.y >> key.m_vecPosition.z;
  stream >> key.m_qRotation.w >> key.m_qRotation.x >> key.m_qRotation.y >> key.m_qRotation.z;
  stream >> key.m_vecScale.x >> key.m_vecScale.y >> key.m_vecScale.z;
  if (!stream.IsGood()) return 0;
  *this = key;
  return 1;
}

void QXBoneKey::Save(QXStream& stream) {
  stream << m_dTime << m_vecPosition.x << m_vecPosition.y << m_vecPosition.z;
  stream << m_qRotation.w << m_qRotation.x << m_qRotation.y << m_qRotation.z;
  stream << m_vecScale.x << m_vecScale.y << m_vecScale.z;
}

}  // namespace QXC
