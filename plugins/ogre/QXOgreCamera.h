/// @file
/// The camera that draws a scene.
#pragma once

#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {

class QXOgreGraphics3D;
class QXOgreRenderTarget;
class QXOgreScene;
class QXOgreSceneNode;
struct QXOgreView;

/// Draws what stands in its scene. While the host has set no projection matrix, the camera computes one for each
/// viewport from projection type, field of view, aspect of the viewport, near and far; a distance that is not set
/// follows the bounds of the scene. A matrix of the host's is kept until the host sets QXMatrix4d::ZERO.
class QXOgreCamera final : public QXCamera {
public:
  /// @param strSceneName  empty: the scene of the target that it draws into
  QXOgreCamera(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName);

  QdcUnicodeString const& GetSceneName() const { return m_strSceneName; }
  /// Draws this scene from now on, and of it only what hangs under a node; null: everything.
  void SetScene(QXOgreScene& scene, QXOgreSceneNode const* pNode);

  /// The view of a viewport as it would be drawn now; it points to this camera's planes.
  QXOgreView MakeView(QXViewport const& viewport, QXOgreRenderTarget const& target);
  /// Null if there is none.
  QXOgreScene* FindScene(QXViewport const* pViewport) const;

  void RenderScene(QXViewport* pViewport, unsigned char bRenderScene) override;
  void UpdateViewMatrix(QXViewport* pViewport) override;
  void UpdateProMatrix() override;

private:
  bool IsProjectionOwn() const;
  void ComputeProjection(QXViewport const& viewport);
  /// The distances of the host, or where one is not set, such that the scene lies between them.
  void FindDistances(QXViewport const& viewport, double& dNear, double& dFar);

  QXOgreGraphics3D& m_Graphics3D;
  QdcUnicodeString m_strSceneName;
  /// Null: the one of the name.
  QXOgreScene* m_pScene;
  QXOgreSceneNode const* m_pNode;
  /// The projection that this camera computed last, by which the host's is told.
  QXMatrix4d m_matOwnProjection;
};

}  // namespace QXC
