/// @file
/// Meshes at thousands of places, in few draw operations.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <unordered_map>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>

namespace QXC {

class QXOgreGraphics3D;
class QXOgreInstancing;

/// Instancings by name. What the device refuses is told as the renderer's error text. Shadows are not drawn, so that
/// nothing casts one.
class QXOgreHwInstancingManager final : public QXHwInstancingManager {
public:
  explicit QXOgreHwInstancingManager(QXOgreGraphics3D& graphics3D);
  ~QXOgreHwInstancingManager() override;
  QXOgreHwInstancingManager(QXOgreHwInstancingManager const&) = delete;
  QXOgreHwInstancingManager& operator=(QXOgreHwInstancingManager const&) = delete;

  unsigned char IsSupported() const override;
  unsigned int GetMaxPlacementCount() const override;
  QXInstancing* CreateInstancing(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void DestroyInstancing(QXInstancing* pInstancing) override;
  void DestroyAllInstancings() override;
  QXInstancing* GetInstancing(QdcUnicodeString const& strName) const override;
  unsigned int GetInstancingCount() const override;
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
  void SetCastShadow(QXInstancing*, unsigned char) override {}
  void SetModelMatrix(QXInstancing* pInstancing, QXMatrix4d const& matModel) override;
  QXBoundingBox GetBoundingBox(QXInstancing* pInstancing) const override;
  unsigned char Intersect(QXInstancing* pInstancing, QXVector3d const& vecOrigin, QXVector3d const& vecDirection,
      double& dDistance, unsigned int& nPlacement) const override;
  unsigned int GetDrawnPlacementCount(QXInstancing* pInstancing) const override;
  void Update() override;

  /// Shows placements with these identifiers as selected, and no others.
  void SelectObjects(std::set<unsigned int> const& setIDs);
  void SetSelectionColor(QXColorValue3D const& color);

private:
  /// Null if it is not one of this manager's; nothing is read through the pointer.
  QXOgreInstancing* Find(QXInstancing const* pInstancing) const;
  /// The instancing that has a placement of that number, else null.
  QXOgreInstancing* Find(QXInstancing const* pInstancing, unsigned int nPlacement) const;

  QXOgreGraphics3D& m_Graphics3D;
  std::map<QdcUnicodeString, std::unique_ptr<QXOgreInstancing>> m_mapInstancings;
  std::unordered_map<QXInstancing const*, QXOgreInstancing*> m_mapOwn;
};

}  // namespace QXC
