#include "QXFrameBenchRenderer.h"

namespace QXC {
namespace {

class QXBenchCamera final : public QXCamera {
public:
  explicit QXBenchCamera(QXBenchCounts& counts) : m_Counts(counts) { m_bTargetNotifyPending = 0; }
  void RenderScene(QXViewport* /*pViewport*/, unsigned char /*bRenderScene*/) override { ++m_Counts.m_nRender; }
  void UpdateViewMatrix(QXViewport* /*pViewport*/) override { ++m_Counts.m_nView; }
  void UpdateProMatrix() override { ++m_Counts.m_nProjection; }

private:
  QXBenchCounts& m_Counts;
};

class QXBenchTarget final : public QXRenderTarget {
public:
  explicit QXBenchTarget(QXBenchCounts& counts) : m_Counts(counts) {}
  void SwapBuffers(unsigned char /*bWaitForVerticalBlank*/) override {}
  unsigned char IsTextureTarget() const override { return 0; }
  void NotifyCameraStateChange(unsigned char /*bChanged*/) override {}
  void BeginViewportUpdate(ViewportPosition& /*position*/) override { ++m_Counts.m_nBegin; }
  unsigned char CopyToMemory(unsigned char* /*pPixels*/, unsigned int /*nByteCount*/) override { return 0; }
  void ApplyCameraToTarget(QXCamera* /*pCamera*/, int /*nOffsetX*/, int /*nOffsetY*/) override { ++m_Counts.m_nApply; }
  unsigned char IsRenderDepth() const override { return 0; }
  unsigned char CopyDepthToMemory(float* /*pDepths*/, unsigned int /*nValueCount*/) override { return 0; }
  QXTexture* GetTexture() const override { return nullptr; }

private:
  QXBenchCounts& m_Counts;
};

}  // namespace

std::unique_ptr<QXCamera> MakeBenchCamera(QXBenchCounts& counts) {
  return std::make_unique<QXBenchCamera>(counts);
}

std::unique_ptr<QXRenderTarget> MakeBenchTarget(QXBenchCounts& counts) {
  return std::make_unique<QXBenchTarget>(counts);
}

}  // namespace QXC
