#include <utility>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>

#include "QXFrameBenchRenderer.h"

namespace QXC {
namespace {

class QXArrayTarget final : public QXBareTarget {
public:
  QXArrayTarget(QXRenderTarget* pTarget, std::vector<QXViewport*> arrViewports, bool bOrdered)
      : m_pTarget(pTarget), m_arrViewports(std::move(arrViewports)), m_bOrdered(bOrdered) {}

  void Update() override {
    QXRenderTarget::ViewportPosition position;
    m_pTarget->BeginViewportUpdate(position);
    for (QXViewport* const pViewport : m_arrViewports) {
      QXCamera* const pCamera = pViewport->m_pCamera;
      if (m_bOrdered) {
        pCamera->UpdateViewMatrix(pViewport);
        pCamera->UpdateProMatrix();
        m_pTarget->ApplyCameraToTarget(pCamera, 0, 0);
      }
      pCamera->RenderScene(pViewport, pViewport->m_bRenderSceneFlag);
      if (pCamera->m_bTargetNotifyPending) {
        m_pTarget->NotifyCameraStateChange(1);
        pCamera->m_bTargetNotifyPending = 0;
      }
    }
    m_nNow = QdcTime::GetMillisecond();
  }

private:
  QXRenderTarget* m_pTarget;
  std::vector<QXViewport*> m_arrViewports;
  bool m_bOrdered;
  unsigned int m_nNow = 0;
};

}  // namespace

std::unique_ptr<QXBareTarget> MakeBareTarget(
    QXRenderTarget* pTarget, std::vector<QXViewport*> arrViewports, bool bOrdered) {
  return std::make_unique<QXArrayTarget>(pTarget, std::move(arrViewports), bOrdered);
}

}  // namespace QXC
