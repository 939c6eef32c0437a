/// @file
/// A head-mounted display of the null renderer.
#pragma once

#include <QxGraphics3D/environment/QXVirtualReality.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

/// A display that is always connected, on a head that a test moves.
class QXNullVirtualReality final : public QXVirtualReality, public QXNullObject {
public:
  /// @param pLog  null: calls are not written down
  explicit QXNullVirtualReality(std::shared_ptr<QXCallLog> pLog) : QXNullObject(std::move(pLog), "display") {}
  ~QXNullVirtualReality() override {
    if (m_bHeld) {
      Release();
    }
    Record("destroyed");
  }

  unsigned char Initialize() override {
    Record("Initialize");
    m_bHeld = 1;
    return 1;
  }
  void UpdatePose() override {
    Record("UpdatePose");
    m_matRead = m_matHead;
  }
  unsigned char GetEyeMatrices(int nEye, QXMatrix4d& matView, QXMatrix4d& matProjection) const override {
    if (!m_bHeld || nEye < 0 || nEye > 1) {
      return 0;
    }
    // The eyes see the head's view from both sides of its middle.
    QXMatrix4d matEye;
    matEye.SetTrans(QXVector3d(nEye == 0 ? 0.5 * m_dEyeDistance : -0.5 * m_dEyeDistance, 0.0, 0.0));
    matView = m_matRead * matEye;
    matProjection = m_matProjection;
    return 1;
  }
  void Submit(QXRenderTarget* pLeft, QXRenderTarget* pRight) override {
    Record("Submit", pLeft, pRight);
    m_nSubmitted += m_bHeld;
  }
  void Release() override {
    Record("Release");
    m_bHeld = 0;
  }

  unsigned char IsHeld() const { return m_bHeld; }
  /// Pictures handed over while the display was held.
  unsigned int GetSubmitCount() const { return m_nSubmitted; }

  /// View matrix of the head, which UpdatePose reads.
  QXMatrix4d m_matHead;
  /// Of both eyes.
  QXMatrix4d m_matProjection;
  /// World units.
  double m_dEyeDistance = 0.064;

private:
  QXMatrix4d m_matRead;
  unsigned char m_bHeld = 0;
  unsigned int m_nSubmitted = 0;
};

}  // namespace QXC
