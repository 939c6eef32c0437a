/// @file
/// What one viewport of one frame shows, and what that costs.
#pragma once

#include <OgreCommon.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXFrustum;
class QXOgreSceneNode;
struct QXOgrePickFilter;

/// One viewport's view of a scene, made by the camera for the length of one RenderScene.
struct QXOgreView {
  /// Planes up to date, in world coordinates with exaggerated heights.
  QXFrustum const* m_pFrustum;
  /// From coordinates relative to m_vecOrigin to the eye's.
  QXMatrix4d m_matView;
  QXMatrix4d m_matProjection;
  /// Where the eye stands in the world; the levels of static geometry go by it.
  QXVector3d m_vecEye;
  /// Movable origin of the scene: everything is made relative to it in double, before it becomes float.
  QXVector3d m_vecOrigin;
  double m_dVerticalExaggeration;
  /// Of the whole picture: filled, edges or corners.
  Ogre::PolygonMode m_ePolygonMode;
  /// Null: everything, else only what hangs under this node.
  QXOgreSceneNode const* m_pNode;
  /// Of the viewport, pixels.
  int m_nWidth;
  int m_nHeight;
  /// Null: a picture, else identifiers of what it takes are drawn.
  QXOgrePickFilter const* m_pPick = nullptr;

  /// All rays to the eye are parallel: the projection leaves w alone.
  bool IsParallel() const { return m_matProjection[2][3] == 0.0; }
};

/// What was drawn.
struct QXOgreCounts {
  unsigned int m_nDrawOperations = 0;
  unsigned int m_nTriangles = 0;
  unsigned int m_nVertices = 0;

  QXOgreCounts& operator+=(QXOgreCounts const& other) {
    m_nDrawOperations += other.m_nDrawOperations;
    m_nTriangles += other.m_nTriangles;
    m_nVertices += other.m_nVertices;
    return *this;
  }
};

}  // namespace QXC
