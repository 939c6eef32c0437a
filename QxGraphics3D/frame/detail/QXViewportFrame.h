/// @file
/// The two steps of a viewport's frame, inlined into the walk of a target: at 15 ns a viewport a call through the
/// library costs as much as a step.
#pragma once

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC::detail {

/// What QXCamera::NotifyViewport does, without dirtying the camera's cache line in every frame.
inline void NotifyViewport(QXCamera& camera, QXViewport* pViewport) {
  if (camera.m_pViewport != pViewport) {
    camera.m_pViewport = pViewport;
  }
  camera.UpdateViewMatrix(pViewport);
  camera.UpdateProMatrix();
}

/// What QXViewport::Update does.
inline void UpdateViewport(QXViewport& viewport) {
  if (viewport.m_pCamera != nullptr) {
    viewport.m_pCamera->RenderScene(&viewport, viewport.m_bRenderSceneFlag);
  }
}

}  // namespace QXC::detail
