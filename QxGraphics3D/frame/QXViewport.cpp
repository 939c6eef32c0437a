#include <QxGraphics3D/frame/QXViewport.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/detail/QXViewportFrame.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {

unsigned char QXViewport::ms_bSceneRenderAllow = 0;
unsigned char QXViewport::ms_bSceneUpdateAllow = 0;
int QXViewport::ms_nThrottleFpsHz = 30;

QXViewport::QXViewport()
    : m_pCamera(nullptr), m_pTarget(nullptr), m_dRelLeft(0.0), m_dRelBottom(0.0), m_dRelWidth(0.0), m_dRelHeight(0.0),
      m_nActLeft(0), m_nActBottom(0), m_nActWidth(0), m_nActHeight(0), m_nZOrder(0), m_nMinZ(0), m_nMaxZ(1),
      m_BackgroundColor(1.0, 1.0, 1.0, 1.0), m_bClearEveryFrame(1), m_nClearBuffers(3), m_bFlagA(0),
      m_bRenderSceneFlag(1), m_bFlagB(1), m_bFlagC(1), m_bBufferCacheValid(0), m_nOriZOrder(0) {}

QXViewport::QXViewport(QXCamera* pCamera, QXRenderTarget* pTarget, double dLeft, double dBottom, double dWidth,
    double dHeight, int nZOrder)
    : QXViewport() {
  m_pCamera = pCamera;
  m_pTarget = pTarget;
  m_dRelLeft = dLeft;
  m_dRelBottom = dBottom;
  m_dRelWidth = dWidth;
  m_dRelHeight = dHeight;
  m_nZOrder = nZOrder;
  m_nOriZOrder = nZOrder;
  m_BackgroundColor = QXColorValue3D::Black;
  UpdateDimensions();
  // Last: the camera computes its matrices from the pixel rectangle.
  if (m_pCamera != nullptr) {
    m_pCamera->NotifyViewport(this);
  }
}

QXViewport::QXViewport(int nLeft, int nBottom, int nWidth, int nHeight) : QXViewport() {
  m_nActLeft = nLeft;
  m_nActBottom = nBottom;
  m_nActWidth = nWidth;
  m_nActHeight = nHeight;
}

QXViewport::QXViewport(QXViewport const& other) = default;
QXViewport& QXViewport::operator=(QXViewport const& other) = default;
QXViewport::~QXViewport() = default;

void QXViewport::SetCamera(QXCamera* pCamera) {
  m_pCamera = pCamera;
  if (m_pCamera != nullptr) {
    m_pCamera->NotifyViewport(this);
  }
}

void QXViewport::UpdateDimensions() {
  if (m_pTarget == nullptr) {
    return;
  }
  double const height = m_pTarget->GetHeight();
  double const width = m_pTarget->GetWidth();
  m_nActLeft = ToInt(m_dRelLeft * width);
  m_nActBottom = ToInt(m_dRelBottom * height);
  m_nActWidth = ToInt(m_dRelWidth * width);
  m_nActHeight = ToInt(m_dRelHeight * height);
  m_bBufferCacheValid = 0;
}

void QXViewport::Update() {
  detail::UpdateViewport(*this);
}

void QXViewport::InitBufferCache() {
  if (m_bBufferCacheValid) {
    return;
  }
  m_pDepthBuffer.reset();
  if (m_nActWidth < 0 || m_nActHeight < 0) {
    return;
  }
  std::size_t const size = static_cast<std::size_t>(m_nActWidth) * static_cast<std::size_t>(m_nActHeight) * 4;
  if (size > PTRDIFF_MAX) {
    return;
  }
  // At least a byte: what malloc gives for none may be null, which would read as a failure.
  void* const pBuffer = std::calloc(size > 0 ? size : 1, 1);
  if (pBuffer == nullptr) {
    return;
  }
  m_pDepthBuffer.reset(static_cast<unsigned char*>(pBuffer), &std::free);
  m_bBufferCacheValid = 1;
}

unsigned char* QXViewport::GetDepthBuffer() {
  InitBufferCache();
  return m_bBufferCacheValid ? m_pDepthBuffer.get() : nullptr;
}

}  // namespace QXC
