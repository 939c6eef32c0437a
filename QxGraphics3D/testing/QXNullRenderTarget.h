/// @file
/// A target of the null renderer.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/testing/QXNullTexture.h>

namespace QXC {

class QXNullGraphics3D;

/// A window or texture that nothing is drawn into. It shows what was cleared: reading it back gives each viewport's
/// background colour where the camera cleared it, and what CopyFromMemory wrote where not. Depth is that of an empty
/// scene, 1 everywhere. Frames, draw operations and triangles are counted.
/// Cost: a frame stores the cleared rectangles, without allocation once each has been seen; pixels are made when they
/// are read back.
class QXNullRenderTarget final : public QXRenderTarget, public QXNullObject {
public:
  /// Made by the null renderer; a test may make one of its own.
  /// @param bTexture  1: a texture target, 0: a window
  QXNullRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, unsigned char bTexture,
      std::shared_ptr<QXCallLog> pLog = nullptr);
  ~QXNullRenderTarget() override;

  /// A frame, with the listener told before and after it.
  void Update() override;
  void SwapBuffers(unsigned char bWaitForVerticalBlank) override;
  unsigned char IsTextureTarget() const override { return m_bTexture; }
  void NotifyCameraStateChange(unsigned char bChanged) override;
  /// Zeroes the counters of the frame.
  void BeginViewportUpdate(ViewportPosition& position) override;
  unsigned char CopyToMemory(unsigned char* pPixels, unsigned int nByteCount) override;
  void ApplyCameraToTarget(QXCamera* pCamera, int nOffsetX, int nOffsetY) override;
  unsigned char IsRenderDepth() const override { return m_bRenderDepth; }
  unsigned char CopyDepthToMemory(float* pDepths, unsigned int nValueCount) override;
  /// A QXNullTexture that shows the target's picture of the moment when it is read.
  QXTexture* GetTexture() const override { return m_pTexture.get(); }
  int GetTextureID() const override { return m_pTexture != nullptr ? m_pTexture->GetTextureID() : -1; }

  /// Resizes, updates the viewports' dimensions and forgets the picture. A size of 0 is refused.
  void ReSize(unsigned int nWidth, unsigned int nHeight) override;
  /// Nothing if nByteCount is less than that of the whole picture.
  void CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount) override;
  /// Of all viewports that stand now.
  void SetBackgroundColor(QXColorValue3D const& color) override;
  void SetClearEveryFrame(unsigned char bClear, unsigned int nBuffers) override;
  void SetRenderDepth(unsigned char bEnable) override;
  void SetSunPosition(QXVector3d const& vecPosition) override;
  QXVector3d GetSunPosition() const override { return m_vecSun; }
  void SetSunLightEnable(unsigned char bEnable) override;
  /// Viewports that show through the camera lose it.
  void NotifyCameraRemoved(QXCamera const* pCamera) override;

  void SetSceneAntialias(unsigned char bEnable) override;
  void SetSceneAntialiasValue(int nSamples) override;
  void SetShadowEnable(unsigned char bEnable) override;
  void SetShadowVisibleDistance(double dDistance) override;
  void AddGlobalEffect(QdcUnicodeString const& strEffect) override;
  void RemoveGlobalEffect(QdcUnicodeString const& strEffect) override;
  void SetGlobalEffectFrustum(QdcUnicodeString const& strEffect, QXFrustum const& frustum) override;
  void RemoveGlobalEffectFrustum(QdcUnicodeString const& strEffect) override;
  void SetCustomClipPlanes(QXPlane const* pPlanes, unsigned int nCount) override;
  void ClearCustomClipPlanes() override;
  void ResetCameraViewport(QXCamera* pCamera) override;
  void CreateShadowSettingInfo() override;
  void UpdateShadowTextureCameras() override;
  void DeleteShadowSettingInfo() override;
  void SetAmbientLight(QXColorValue3D const& color) override;
  void SetDiffuseLight(QXColorValue3D const& color) override;
  void AddDepthTextureRequest() override;
  void RemoveDepthTextureRequest() override;

  /// The renderer tells what a camera cleared and drew; pixels from the bottom left.
  void Clear(int nLeft, int nBottom, int nWidth, int nHeight, QXColorValue3D const& color);
  void CountDraw(unsigned int nOperations, unsigned int nTriangles);

  /// A colour channel as it stands in a picture: 0 to 255, rounded; below 0 and no number at all give 0.
  static unsigned char ToByte(double dChannel);

  /// The renderer goes first: viewports lose their cameras, which are the renderer's.
  void LeaveRenderer();

  /// Frames since the target was made.
  unsigned int GetUpdateCount() const { return m_nUpdates; }
  /// Draw operations of the last frame.
  unsigned int GetDrawOperationCount() const { return m_nDrawOperations; }
  unsigned int GetSwapCount() const { return m_nSwaps; }

private:
  friend class QXNullGraphics3D;

  struct ClearedRect {
    int m_nLeft;
    int m_nBottom;
    int m_nRight;
    int m_nTop;
    unsigned char m_Pixel[4];
  };

  /// Brings m_arrPixels up to date.
  void Flatten();

  /// Null for a target that no renderer made, or whose renderer has gone.
  QXNullGraphics3D* m_pRenderer = nullptr;
  unsigned char m_bTexture;
  unsigned char m_bRenderDepth = 0;
  QXVector3d m_vecSun;
  unsigned int m_nUpdates = 0;
  unsigned int m_nDrawOperations = 0;
  unsigned int m_nSwaps = 0;
  /// Cleared since the pixels were last brought up to date, oldest first, none hidden by a later one.
  std::vector<ClearedRect> m_arrCleared;
  /// B,G,R,A, rows top down; empty while nothing was read or written.
  std::vector<unsigned char> m_arrPixels;
  /// Null for a window.
  std::unique_ptr<QXNullTexture> m_pTexture;
};

}  // namespace QXC
