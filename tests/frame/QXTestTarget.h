// A target and a camera that write down what the library calls on them, without any renderer behind: what the tests
// of targets and viewports need, and nothing more.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {

struct QXTestLog {
  std::vector<std::string> m_arrLines;
};

class QXTestTarget : public QXRenderTarget {
public:
  explicit QXTestTarget(QXTestLog& log) : m_Log(log) {}
  ~QXTestTarget() override {
    if (m_pDeaths != nullptr) {
      ++*m_pDeaths;
    }
  }

  void SwapBuffers(unsigned char /*bWaitForVerticalBlank*/) override {}
  unsigned char IsTextureTarget() const override { return 1; }
  void NotifyCameraStateChange(unsigned char bChanged) override {
    m_Log.m_arrLines.push_back("target camera state " + std::to_string(bChanged));
  }
  void BeginViewportUpdate(ViewportPosition& position) override {
    m_Log.m_arrLines.push_back("target begin");
    for (int i = 0; i < m_nSkip && !m_Viewports.IsEOF(position); ++i) {
      int nKey = 0;
      QXViewport* pViewport = nullptr;
      m_Viewports.GetNextAssoc(position, nKey, pViewport);
    }
  }
  unsigned char CopyToMemory(unsigned char* /*pPixels*/, unsigned int /*nByteCount*/) override { return 0; }
  void ApplyCameraToTarget(QXCamera* pCamera, int nOffsetX, int nOffsetY) override {
    m_Log.m_arrLines.push_back("target apply z" + std::to_string(pCamera->GetViewport()->GetZOrder()) + " " +
                               std::to_string(nOffsetX) + "," + std::to_string(nOffsetY));
  }
  unsigned char IsRenderDepth() const override { return 0; }
  unsigned char CopyDepthToMemory(float* /*pDepths*/, unsigned int /*nValueCount*/) override { return 0; }
  QXTexture* GetTexture() const override { return nullptr; }

  QXTestLog& m_Log;
  int* m_pDeaths = nullptr;
  /// Viewports that BeginViewportUpdate passes over.
  int m_nSkip = 0;
};

class QXTestCamera : public QXCamera {
public:
  explicit QXTestCamera(QXTestLog& log) : m_Log(log) {}

  void RenderScene(QXViewport* pViewport, unsigned char bFlag) override {
    m_Log.m_arrLines.push_back(
        "camera render z" + std::to_string(pViewport->GetZOrder()) + " flag" + std::to_string(bFlag));
    if (m_bLeave) {
      pViewport->m_pCamera = nullptr;
    }
    if (m_pfnDuringRender) {
      m_pfnDuringRender(*pViewport);
    }
  }
  void UpdateViewMatrix(QXViewport* pViewport) override {
    m_Log.m_arrLines.push_back("camera view " + std::to_string(pViewport->GetActualWidth()) + "x" +
                               std::to_string(pViewport->GetActualHeight()));
  }
  void UpdateProMatrix() override { m_Log.m_arrLines.push_back("camera projection"); }

  QXTestLog& m_Log;
  /// Takes itself out of the viewport while rendering it.
  bool m_bLeave = false;
  /// What the scene does while it is drawn.
  std::function<void(QXViewport&)> m_pfnDuringRender;
};

}  // namespace QXC
