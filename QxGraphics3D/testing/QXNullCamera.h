/// @file
/// A camera of the null renderer.
#pragma once

#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {

class QXNullGraphics3D;
class QXNullInstancing;
class QXNullScene;

/// Walks the road of a real camera and counts in place of drawing: makes its viewport current, clears it, sets its
/// matrices, culls the drawables of its scene with its frustum, and adds what is left to the counters of target and
/// renderer. Then calls the render function that the host installed.
/// The projection is the camera's own, from field of view, distances and viewport, until a host sets another. Distances
/// that the host does not set reach from next to the eye past the far side of the Earth: there is no depth buffer here
/// whose steps they would coarsen.
class QXNullCamera final : public QXCamera, public QXNullObject {
public:
  /// @param strSceneName  empty: draws the scene of the target, else the 3D scene
  QXNullCamera(QXNullGraphics3D& graphics, QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName,
      std::shared_ptr<QXCallLog> pLog);
  ~QXNullCamera() override;

  void RenderScene(QXViewport* pViewport, unsigned char bRenderScene) override;
  void UpdateViewMatrix(QXViewport* pViewport) override;
  void UpdateProMatrix() override;
  void Refresh() override;

  QdcUnicodeString const& GetSceneName() const { return m_strSceneName; }
  /// The scene that it draws into the viewport, null if there is none of that name.
  QXNullScene* FindScene(QXViewport const& viewport) const;
  /// Drawables that the last frame did not cull.
  unsigned int GetDrawnCount() const { return m_nDrawn; }

private:
  void ComputeProjection(QXViewport const& viewport);
  void DrawScene(QXViewport const& viewport);
  void DrawInstancing(QXNullInstancing& instancing, double dExaggeration);

  QXNullGraphics3D& m_Graphics;
  QdcUnicodeString m_strSceneName;
  QXMatrix4d m_matOwnProjection;
  unsigned int m_nDrawn = 0;
};

}  // namespace QXC
