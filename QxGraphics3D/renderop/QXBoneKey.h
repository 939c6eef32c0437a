/// @file
/// Key of a bone.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXAnimationKey.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// Where a bone stands at one time, relative to its parent, in place of the matrix that it has at rest: scaled, then
/// turned, then moved. The kind of keys that QXSkeletonAnimation::SetKeys takes.
class QXGRAPHICS3D_API QXBoneKey : public QXAnimationKey {
public:
  QXBoneKey();
  QXBoneKey(QXBoneKey const& other);
  QXBoneKey& operator=(QXBoneKey const& other);
  ~QXBoneKey() override;

  /// 11 doubles in the order of the fields.
  /// @return  0 if the stream ended early; the key then keeps what it had
  unsigned char Load(QXStream& stream) override;
  void Save(QXStream& stream) override;

  double m_dTime = 0.0;  ///< Seconds
  QXVector3d m_vecPosition;
  QXQuaternion4d m_qRotation;  ///< Need not have length 1, but a length
  QXVector3d m_vecScale = QXVector3d(1.0, 1.0, 1.0);
};

}  // namespace QXC
