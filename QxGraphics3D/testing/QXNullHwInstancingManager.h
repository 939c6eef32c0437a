/// @file
/// Hardware instancing of the null renderer.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

class QXNullGraphics3D;
class QXNullRenderOperation3D;
class QXNullScene;

/// A place of the mesh and what a host set on it.
struct QXNullPlacement {
  QXMatrix4d m_matPlacement;
  QXColorValue3D m_Color{1.0, 1.0, 1.0, 1.0};
  unsigned int m_nSelectionID = 0;
  unsigned char m_bVisible = 1;
};

/// Keeps mesh and places; cameras cull the places one by one and count what they would draw.
class QXNullInstancing final : public QXInstancing, public QXNullObject {
public:
  QXNullInstancing(std::shared_ptr<QXCallLog> pLog, std::string strLabel, QXNullScene* pScene);
  /// Leaves its scene.
  ~QXNullInstancing() override;

  void SetVisible(unsigned char bVisible) override { RecordAndKeep("SetVisible", bVisible, m_bVisible); }
  /// Uses and matrices that are null are left out.
  void UpdateInstances() override;

  /// In place of a former one; the label of the drawable inside is this object's with "mesh".
  void SetMesh(QXRenderOperationMultiIndex* pMesh);
  /// 0 if the drawable is not one of the null renderer's.
  unsigned char SetSharedMesh(QXROInstancePtr const& pMesh);
  /// Null without a mesh.
  QXNullRenderOperation3D const* GetMesh() const { return m_pMesh; }
  /// Bounds of a place in the world; null without a mesh.
  QXBoundingBox GetPlacementBounds(QXNullPlacement const& placement) const;
  /// From the mesh to the world: the matrix that its operation brought, that of the place, that of the whole.
  QXMatrix4d GetWorldMatrix(QXNullPlacement const& placement) const;
  /// Whether a camera at that place would draw it, were it in its frustum.
  unsigned char IsDrawnFrom(
      QXNullPlacement const& placement, QXVector3d const& vecEye, QXBoundingBox const& boxWorld) const;
  /// Draw operations for so many places, when the device takes nMost in each.
  unsigned int GetDrawOperationCount(unsigned int nPlacements, unsigned int nMost) const;

  std::vector<QXNullPlacement> m_arrPlacements;
  QXMatrix4d m_matModel;
  double m_dNearDist = 0.0;
  double m_dFarDist = 0.0;
  /// Of the last view; cameras write it.
  unsigned int m_nDrawnPlacements = 0;
  /// Null once it is gone; QXNullScene sets it.
  QXNullScene* m_pScene;

private:
  unsigned char m_bVisible = 1;
  std::unique_ptr<QXNullRenderOperation3D> m_pOwnMesh;
  QXROInstancePtr m_pSharedMesh;
  QXNullRenderOperation3D const* m_pMesh = nullptr;
};

/// Instancings by name. Nothing is sent anywhere, so that changes show without Update.
class QXNullHwInstancingManager final : public QXHwInstancingManager, public QXNullObject {
public:
  /// Of all null renderers.
  static constexpr unsigned int MaxPlacementCount = 65536;

  QXNullHwInstancingManager(QXNullGraphics3D& graphics, std::shared_ptr<QXCallLog> pLog);
  ~QXNullHwInstancingManager() override;

  unsigned char IsSupported() const override { return 1; }
  unsigned int GetMaxPlacementCount() const override { return MaxPlacementCount; }
  QXInstancing* CreateInstancing(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void DestroyInstancing(QXInstancing* pInstancing) override;
  void DestroyAllInstancings() override;
  QXInstancing* GetInstancing(QdcUnicodeString const& strName) const override;
  unsigned int GetInstancingCount() const override { return static_cast<unsigned int>(m_mapInstancings.size()); }
  unsigned char SetMesh(QXInstancing* pInstancing, QXRenderOperationMultiIndex* pMesh) override;
  unsigned char SetSharedMesh(QXInstancing* pInstancing, QXROInstancePtr const& pMesh) override;
  unsigned int AddPlacements(QXInstancing* pInstancing, QXMatrix4d const* pMatrices, unsigned int nCount) override;
  unsigned char SetPlacements(
      QXInstancing* pInstancing, unsigned int nFirst, QXMatrix4d const* pMatrices, unsigned int nCount) override;
  unsigned char GetPlacement(
      QXInstancing* pInstancing, unsigned int nPlacement, QXMatrix4d& matPlacement) const override;
  void RemovePlacements(QXInstancing* pInstancing, unsigned int nFirst, unsigned int nCount) override;
  unsigned int GetPlacementCount(QXInstancing* pInstancing) const override;
  void SetPlacementVisible(QXInstancing* pInstancing, unsigned int nPlacement, unsigned char bVisible) override;
  void SetPlacementColor(QXInstancing* pInstancing, unsigned int nPlacement, QXColorValue3D const& color) override;
  void SetPlacementSelectionID(QXInstancing* pInstancing, unsigned int nPlacement, unsigned int nID) override;
  void SetVisibleDistance(QXInstancing* pInstancing, double dNear, double dFar) override;
  void SetCastShadow(QXInstancing* pInstancing, unsigned char bCast) override;
  void SetModelMatrix(QXInstancing* pInstancing, QXMatrix4d const& matModel) override;
  QXBoundingBox GetBoundingBox(QXInstancing* pInstancing) const override;
  unsigned char Intersect(QXInstancing* pInstancing, QXVector3d const& vecOrigin, QXVector3d const& vecDirection,
      double& dDistance, unsigned int& nPlacement) const override;
  unsigned int GetDrawnPlacementCount(QXInstancing* pInstancing) const override;
  void Update() override { Record("Update"); }

  /// DestroyAllInstancings without a line in the log, for the renderer's own use.
  void Clear() { m_mapInstancings.clear(); }
  /// The instancing, if it is one of this manager's; else null.
  QXNullInstancing* Find(QXInstancing* pInstancing) const;

private:
  /// Null past the last.
  QXNullPlacement* FindPlacement(QXInstancing* pInstancing, unsigned int nPlacement) const;

  QXNullGraphics3D& m_Graphics;
  std::map<QdcUnicodeString, std::unique_ptr<QXNullInstancing>> m_mapInstancings;
};

}  // namespace QXC
