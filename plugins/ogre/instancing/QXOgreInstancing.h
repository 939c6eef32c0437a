/// @file
/// One mesh at many places, as a scene draws it.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>

#include <plugins/ogre/QXOgreSceneItem.h>
#include <plugins/ogre/instancing/QXOgreInstanceDraws.h>
#include <plugins/ogre/instancing/QXOgreMeshTriangles.h>
#include <plugins/ogre/instancing/QXOgrePlacements.h>

namespace QXC {

class QXOgreDrawable;
class QXOgreGraphics3D;
class QXOgreScene;

/// Made by the manager, which owns it, for a scene that may go before it does; it draws nothing then.
class QXOgreInstancing final : public QXInstancing, public QXOgreSceneItem {
public:
  /// Most placements in one draw operation: a buffer of 68 MiB.
  static constexpr unsigned int MOST_PLACEMENTS = 1U << 20U;

  /// The renderer has a device.
  QXOgreInstancing(QXOgreGraphics3D& graphics3D, QXOgreScene& scene);
  ~QXOgreInstancing() override;

  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible; }
  /// Uses and matrices that are null are left out; colours and identifiers begin anew.
  void UpdateInstances() override;

  void Queue(QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths,
      QXOgreCounts& counts) override;
  bool HasIdentifiers() const override { return true; }
  QXBoundingBox GetVisibleBounds() const override;
  void LeaveScene() override { m_pScene = nullptr; }

  /// 0 for geometry that cannot be drawn; null takes the mesh away. May throw what OGRE throws.
  unsigned char SetMesh(QXRenderOperationMultiIndex const* pMesh);
  unsigned char SetSharedMesh(QXROInstancePtr const& pMesh);
  QXOgrePlacements& GetPlacements() { return m_Placements; }
  void SetVisibleDistance(double dNear, double dFar);
  /// Brings everything on the device up to date with what was told; drawing does so too. May throw what OGRE throws.
  void Update();
  /// Of placements that are selected. A shared mesh has that of its drawable.
  void SetSelectionColor(QXColorValue3D const& color);
  /// Around all placements, hidden ones included.
  QXBoundingBox GetBounds() const;
  unsigned char Intersect(
      QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance, unsigned int& nPlacement) const;
  unsigned int GetDrawnCount() const { return m_nDrawn; }

private:
  /// Null without one that can be drawn.
  QXOgreDrawable* FindMesh() const;
  /// Brings the placements up to date with the mesh.
  void Refresh(QXOgreDrawable const& mesh) const;
  std::size_t GetMost() const;

  QXOgreGraphics3D& m_Graphics3D;
  QXOgreScene* m_pScene;
  std::unique_ptr<QXOgreDrawable> m_pOwnMesh;
  QXROInstancePtr m_pSharedMesh;
  /// What follows from mesh and matrices is computed when it is asked for.
  mutable QXOgrePlacements m_Placements;
  mutable QXOgreMeshTriangles m_Triangles;
  QXOgreInstanceDraws m_Draws;
  double m_dNear;
  double m_dFar;
  unsigned int m_nDrawn;
  unsigned char m_bVisible;
};

}  // namespace QXC
