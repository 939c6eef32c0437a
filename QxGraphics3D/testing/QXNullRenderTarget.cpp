#include <QxGraphics3D/testing/QXNullRenderTarget.h>

#include <algorithm>
#include <cstddef>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {
namespace {

/// More differently placed rectangles than any frame has viewports: then they are painted and forgotten.
constexpr std::size_t MaxClearedRects = 64;

template <class Operation>
void ForEachViewport(QXRenderTarget& target, Operation const& operation) {
  auto position = target.m_Viewports.GetStartPosition();
  for (; !target.m_Viewports.IsEOF(position); ++position) {
    if (position->second != nullptr) {
      operation(*position->second);
    }
  }
}

}  // namespace

QXNullRenderTarget::QXNullRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight,
    unsigned char bTexture, std::shared_ptr<QXCallLog> pLog)
    : QXNullObject(std::move(pLog), "target " + QXCallLog::Quote(strName)), m_bTexture(bTexture) {
  m_strName = strName;
  m_nWidth = nWidth;
  m_nHeight = nHeight;
  m_nColourDepth = 32;
  m_arrCleared.reserve(MaxClearedRects);
  if (bTexture) {
    m_pTexture = std::make_unique<QXNullTexture>(m_pLog, strName);
    m_pTexture->SetRefresh([this] {
      Flatten();
      m_pTexture->SetDevicePicture(m_nWidth, m_nHeight, m_arrPixels);
    });
  }
}

QXNullRenderTarget::~QXNullRenderTarget() {
  Record("destroyed");
  if (m_pRenderer != nullptr) {
    m_pRenderer->Forget(this);
  }
}

void QXNullRenderTarget::LeaveRenderer() {
  ForEachViewport(*this, [](QXViewport& viewport) { viewport.SetCamera(nullptr); });
  m_pRenderer = nullptr;
  m_pGraphics3D = nullptr;
}

// --- The frame ---

void QXNullRenderTarget::Update() {
  Record("Update");
  if (m_pListener != nullptr) {
    m_pListener->BeforeRender();
  }
  QXRenderTarget::Update();
  if (m_pListener != nullptr) {
    m_pListener->PostRender();
  }
  ++m_nUpdates;
}

void QXNullRenderTarget::BeginViewportUpdate(ViewportPosition& /*position*/) {
  Record("BeginViewportUpdate");
  m_Stats.triangleCount = 0;
  m_nDrawOperations = 0;
}

void QXNullRenderTarget::ApplyCameraToTarget(QXCamera* pCamera, int nOffsetX, int nOffsetY) {
  Record("ApplyCameraToTarget", pCamera, nOffsetX, nOffsetY);
}

void QXNullRenderTarget::NotifyCameraStateChange(unsigned char bChanged) {
  Record("NotifyCameraStateChange", bChanged);
}

void QXNullRenderTarget::SwapBuffers(unsigned char bWaitForVerticalBlank) {
  Record("SwapBuffers", bWaitForVerticalBlank);
  ++m_nSwaps;
}

void QXNullRenderTarget::CountDraw(unsigned int nOperations, unsigned int nTriangles) {
  m_nDrawOperations += nOperations;
  m_Stats.triangleCount += static_cast<int>(nTriangles);
}

void QXNullRenderTarget::NotifyCameraRemoved(QXCamera const* pCamera) {
  Record("NotifyCameraRemoved", pCamera);
  ForEachViewport(*this, [pCamera](QXViewport& viewport) {
    if (viewport.GetCamera() == pCamera) {
      viewport.SetCamera(nullptr);
    }
  });
}

// --- The picture ---

unsigned char QXNullRenderTarget::ToByte(double dChannel) {
  // Written so that a channel that is not a number becomes 0.
  double const dClamped = dChannel > 0.0 ? std::min(dChannel, 1.0) : 0.0;
  return static_cast<unsigned char>(dClamped * 255.0 + 0.5);
}

void QXNullRenderTarget::Clear(int nLeft, int nBottom, int nWidth, int nHeight, QXColorValue3D const& color) {
  // In 64 bits: a viewport may reach past the range of int.
  auto const End = [](int nStart, int nSize, unsigned int nLimit) {
    return static_cast<int>(std::clamp<long long>(static_cast<long long>(nStart) + nSize, 0, nLimit));
  };
  ClearedRect const cleared = {std::max(nLeft, 0), std::max(nBottom, 0), End(nLeft, nWidth, m_nWidth),
      End(nBottom, nHeight, m_nHeight), {ToByte(color.b), ToByte(color.g), ToByte(color.r), ToByte(color.a)}};
  if (cleared.m_nLeft >= cleared.m_nRight || cleared.m_nBottom >= cleared.m_nTop) {
    return;
  }
  auto const IsHidden = [&cleared](ClearedRect const& earlier) {
    return earlier.m_nLeft >= cleared.m_nLeft && earlier.m_nBottom >= cleared.m_nBottom &&
           earlier.m_nRight <= cleared.m_nRight && earlier.m_nTop <= cleared.m_nTop;
  };
  m_arrCleared.erase(std::remove_if(m_arrCleared.begin(), m_arrCleared.end(), IsHidden), m_arrCleared.end());
  if (m_arrCleared.size() == MaxClearedRects) {
    Flatten();
  }
  m_arrCleared.push_back(cleared);
}

void QXNullRenderTarget::Flatten() {
  m_arrPixels.resize(std::size_t{4} * m_nWidth * m_nHeight);
  for (ClearedRect cleared : m_arrCleared) {
    // The size may have been set smaller since.
    cleared.m_nRight = std::min(cleared.m_nRight, static_cast<int>(m_nWidth));
    cleared.m_nTop = std::min(cleared.m_nTop, static_cast<int>(m_nHeight));
    for (int nY = cleared.m_nBottom; nY < cleared.m_nTop; ++nY) {
      std::size_t const nRow = m_nHeight - 1 - static_cast<std::size_t>(nY);
      unsigned char* pPixel =
          m_arrPixels.data() + std::size_t{4} * (nRow * m_nWidth + static_cast<std::size_t>(cleared.m_nLeft));
      for (int nX = cleared.m_nLeft; nX < cleared.m_nRight; ++nX, pPixel += 4) {
        std::copy_n(cleared.m_Pixel, 4, pPixel);
      }
    }
  }
  m_arrCleared.clear();
}

unsigned char QXNullRenderTarget::CopyToMemory(unsigned char* pPixels, unsigned int nByteCount) {
  Record("CopyToMemory", nByteCount);
  if (pPixels == nullptr || nByteCount < std::size_t{4} * m_nWidth * m_nHeight) {
    return 0;
  }
  Flatten();
  std::copy(m_arrPixels.begin(), m_arrPixels.end(), pPixels);
  return 1;
}

void QXNullRenderTarget::CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount) {
  Record("CopyFromMemory", nByteCount);
  if (pPixels != nullptr && nByteCount >= std::size_t{4} * m_nWidth * m_nHeight) {
    m_arrCleared.clear();
    m_arrPixels.assign(pPixels, pPixels + std::size_t{4} * m_nWidth * m_nHeight);
  }
}

unsigned char QXNullRenderTarget::CopyDepthToMemory(float* pDepths, unsigned int nValueCount) {
  Record("CopyDepthToMemory", nValueCount);
  std::size_t const nNeeded = std::size_t{m_nWidth} * m_nHeight;
  if (!m_bRenderDepth || pDepths == nullptr || nValueCount < nNeeded) {
    return 0;
  }
  std::fill_n(pDepths, nNeeded, 1.0F);
  return 1;
}

void QXNullRenderTarget::ReSize(unsigned int nWidth, unsigned int nHeight) {
  Record("ReSize", nWidth, nHeight);
  if (nWidth == 0 || nHeight == 0) {
    return;
  }
  m_nWidth = nWidth;
  m_nHeight = nHeight;
  m_arrCleared.clear();
  m_arrPixels.clear();
  ForEachViewport(*this, [](QXViewport& viewport) { viewport.UpdateDimensions(); });
}

void QXNullRenderTarget::SetBackgroundColor(QXColorValue3D const& color) {
  Record("SetBackgroundColor", color);
  ForEachViewport(*this, [&color](QXViewport& viewport) { viewport.m_BackgroundColor = color; });
}

void QXNullRenderTarget::SetClearEveryFrame(unsigned char bClear, unsigned int nBuffers) {
  Record("SetClearEveryFrame", bClear, nBuffers);
  ForEachViewport(*this, [bClear, nBuffers](QXViewport& viewport) {
    viewport.m_bClearEveryFrame = bClear;
    viewport.m_nClearBuffers = nBuffers;
  });
}

void QXNullRenderTarget::SetRenderDepth(unsigned char bEnable) {
  Record("SetRenderDepth", bEnable);
  m_bRenderDepth = bEnable;
}

// --- Sun ---

void QXNullRenderTarget::SetSunPosition(QXVector3d const& vecPosition) {
  Record("SetSunPosition", vecPosition);
  m_vecSun = vecPosition;
}

void QXNullRenderTarget::SetSunLightEnable(unsigned char bEnable) {
  Record("SetSunLightEnable", bEnable);
  m_bSunLightEnable = bEnable;
}

// --- What only a picture would show: written down, and nothing else ---

void QXNullRenderTarget::SetSceneAntialias(unsigned char bEnable) {
  Record("SetSceneAntialias", bEnable);
}
void QXNullRenderTarget::SetSceneAntialiasValue(int nSamples) {
  Record("SetSceneAntialiasValue", nSamples);
}
void QXNullRenderTarget::SetShadowEnable(unsigned char bEnable) {
  Record("SetShadowEnable", bEnable);
}
void QXNullRenderTarget::SetShadowVisibleDistance(double dDistance) {
  Record("SetShadowVisibleDistance", dDistance);
}
void QXNullRenderTarget::AddGlobalEffect(QdcUnicodeString const& strEffect) {
  Record("AddGlobalEffect", strEffect);
}
void QXNullRenderTarget::RemoveGlobalEffect(QdcUnicodeString const& strEffect) {
  Record("RemoveGlobalEffect", strEffect);
}
void QXNullRenderTarget::SetGlobalEffectFrustum(QdcUnicodeString const& strEffect, QXFrustum const& /*frustum*/) {
  Record("SetGlobalEffectFrustum", strEffect);
}
void QXNullRenderTarget::RemoveGlobalEffectFrustum(QdcUnicodeString const& strEffect) {
  Record("RemoveGlobalEffectFrustum", strEffect);
}
void QXNullRenderTarget::SetCustomClipPlanes(QXPlane const* pPlanes, unsigned int nCount) {
  Record("SetCustomClipPlanes", QXLoggedMemory{pPlanes}, nCount);
}
void QXNullRenderTarget::ClearCustomClipPlanes() {
  Record("ClearCustomClipPlanes");
}
void QXNullRenderTarget::ResetCameraViewport(QXCamera* pCamera) {
  Record("ResetCameraViewport", pCamera);
}
void QXNullRenderTarget::CreateShadowSettingInfo() {
  Record("CreateShadowSettingInfo");
}
void QXNullRenderTarget::UpdateShadowTextureCameras() {
  Record("UpdateShadowTextureCameras");
}
void QXNullRenderTarget::DeleteShadowSettingInfo() {
  Record("DeleteShadowSettingInfo");
}
void QXNullRenderTarget::SetAmbientLight(QXColorValue3D const& color) {
  Record("SetAmbientLight", color);
}
void QXNullRenderTarget::SetDiffuseLight(QXColorValue3D const& color) {
  Record("SetDiffuseLight", color);
}
void QXNullRenderTarget::AddDepthTextureRequest() {
  Record("AddDepthTextureRequest");
}
void QXNullRenderTarget::RemoveDepthTextureRequest() {
  Record("RemoveDepthTextureRequest");
}

}  // namespace QXC
