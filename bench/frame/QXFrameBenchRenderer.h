// The renderer of the frame bench. It stands behind interfaces and in a source of its own: a compiler that saw the
// classes beside the bare loop would guess them and make plain calls of its virtual ones.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {

/// What a renderer does at each call, cut down to a count, so that no call can be left out.
struct QXBenchCounts {
  long m_nRender = 0;
  long m_nView = 0;
  long m_nProjection = 0;
  long m_nApply = 0;
  long m_nBegin = 0;
};

/// A target's frame without the target's bookkeeping.
class QXBareTarget {
public:
  virtual ~QXBareTarget() = default;
  virtual void Update() = 0;
};

std::unique_ptr<QXCamera> MakeBenchCamera(QXBenchCounts& counts);
std::unique_ptr<QXRenderTarget> MakeBenchTarget(QXBenchCounts& counts);
/// Makes the same virtual calls on target and cameras as the target's own frame does.
std::unique_ptr<QXBareTarget> MakeBareTarget(
    QXRenderTarget* pTarget, std::vector<QXViewport*> arrViewports, bool bOrdered);

}  // namespace QXC
