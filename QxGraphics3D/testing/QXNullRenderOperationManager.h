/// @file
/// Maker of the null renderer's drawables.
#pragma once

#include <vector>

#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

class QXNullGraphics3D;
class QXNullRenderOperation3D;

/// Makes drawables and the other things that stand in scenes, numbered from 1 in the log in the order of their making.
/// Every kind exists here, so nothing is ever refused but a scene that does not.
class QXNullRenderOperationManager final : public QXRenderOperationManager, public QXNullObject {
public:
  explicit QXNullRenderOperationManager(QXNullGraphics3D& graphics, std::shared_ptr<QXCallLog> pLog);
  /// Drawables that are still alive learn that it is gone.
  ~QXNullRenderOperationManager() override;

  unsigned int GetRenderOperationCount() const override { return static_cast<unsigned int>(m_arrDrawables.size()); }
  QXRenderOperation3D* CreateRenderOperation3D(QdcUnicodeString const& strSceneName, unsigned char bAttach) override;
  void DestroyRenderOperation3D(QXRenderOperation3D* pOperation) override;
  unsigned char AttachRenderOperation3D(QXRenderOperation3D* pOperation, QdcUnicodeString const& strSceneName) override;
  void DetachRenderOperation3D(QXRenderOperation3D* pOperation) override;
  QXBillboard* CreateBillboard(QdcUnicodeString const& strSceneName) override;
  QXRenderOperation3D* CreateStaticGeometry3D(QdcUnicodeString const& strSceneName,
      QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) override;
  QXParticleSystem3D* CreateParticleSystem(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strTemplate) override;
  QXRibbonTrail3D* CreateRibbonTrail(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strName,
      QdcUnicodeString const& strMaterial) override;
  QXQueryOperation3D* CreateQueryOperation(QdcUnicodeString const& strName) override;
  QXSkeletonAnimation* CreateSkeletonAnimation(QdcUnicodeString const& strName) override;

  /// A drawable's destructor calls it.
  void Forget(QXNullRenderOperation3D* pDrawable);
  /// The drawable, if it is one of this manager's; else null.
  QXNullRenderOperation3D* Find(QXRenderOperation3D* pOperation) const;
  std::vector<QXNullRenderOperation3D*> const& GetDrawables() const { return m_arrDrawables; }

private:
  /// @param bAttach  1: in that scene, if there is one
  QXNullRenderOperation3D* MakeDrawable(QdcUnicodeString const& strSceneName, unsigned char bAttach);
  std::string MakeLabel(char const* szKind);

  QXNullGraphics3D& m_Graphics;
  std::vector<QXNullRenderOperation3D*> m_arrDrawables;
  int m_nMade = 0;
};

}  // namespace QXC
