/// @file
/// What windows and textures have in common as places to draw into.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <OgrePrerequisites.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>

#include <plugins/ogre/QXOgreView.h>

namespace QXC {

class QXOgreBloom;
class QXOgreCamera;
class QXOgreGraphics3D;
class QXOgreSampleCounts;
class QXOgreScene;
struct QXOgreLight;

/// A target of this plug-in. It has one OGRE viewport, which takes the place, background and clear flags of each of the
/// library's viewports in turn while these draw. When the renderer goes first, the target lives on as one that draws
/// nothing, since it belongs to the host.
class QXOgreRenderTarget : public QXRenderTarget {
public:
  ~QXOgreRenderTarget() override;
  QXOgreRenderTarget(QXOgreRenderTarget const&) = delete;
  QXOgreRenderTarget& operator=(QXOgreRenderTarget const&) = delete;

  /// The renderer goes: releases everything of OGRE's.
  void LeaveRenderer();
  /// Draws one viewport and counts what that took. Called by the camera while Update runs.
  void DrawViewport(QXViewport const& viewport, QXOgreScene* pScene, QXOgreView const& view, unsigned char bDrawables);
  /// Draws a camera's picture into a part of the target (fractions of it, counted from the lower left corner) on a
  /// transparent background; the rest stays.
  void DrawPatch(QXOgreCamera& camera, QdcRect2D const& rcPatch);
  /// The pixels of a viewport as a view of its own, counted from the lower left corner of the target.
  static QXOgreView MakePixelView(QXViewport const& viewport);
  /// Draws a scene above what a viewport's place shows. Called while Update runs.
  void DrawAbove(QXViewport const& viewport, QXOgreScene& scene, QXOgreView const& view);
  /// The overlays belong to pictures that somebody looks at, and to no others: not to those that other pictures are made
  /// of. They are shown at first.
  void SetOverlaysShown(bool bShown) { m_bOverlaysShown = bShown; }
  /// Draws a scene over the finished picture that a viewport of this target has.
  void DrawOver(QXViewport const& viewport, QXOgreScene& scene, QXOgreView const& view);
  /// Whether it is one of this target's; it may have died.
  bool HasViewport(QXViewport const* pViewport) const;
  /// Whether bright things glow in its next pictures, where the renderer has not taken that out.
  void SetBloom(bool bBloom) { m_bBloom = bBloom && !m_bIdentifiers; }
  /// Draws identifiers from now on, as QXSceneOperation::GetID takes pixels apart, one sample a pixel and 0 where there is
  /// nothing. Backgrounds and what sets the number of samples take no effect any more.
  void DrawIdentifiers();
  /// Those that there are, in the order in which they are drawn.
  std::vector<QXViewport*> GetViewports() const;
  /// The number of the m_eRenderState as OGRE's.
  Ogre::PolygonMode GetPolygonMode() const;

  /// 4 samples a pixel, if SetSceneAntialiasValue has not asked for another number.
  void SetSceneAntialias(unsigned char bEnable) override;
  unsigned char GetSceneAntialias() const override { return m_nSamples > 1; }
  /// 1 to 16; the device may give fewer. The picture is lost and drawn anew with the next frame.
  void SetSceneAntialiasValue(int nSamples) override;
  int GetSceneAntialiasValue() const override { return m_nSamples; }
  void ReSize(unsigned int nWidth, unsigned int nHeight) override;
  void Update() override;
  void SwapBuffers(unsigned char bWaitForVerticalBlank) override;
  void NotifyCameraStateChange(unsigned char) override {}
  void NotifyCameraRemoved(QXCamera const* pCamera) override;
  void BeginViewportUpdate(ViewportPosition& position) override;
  void SetClearEveryFrame(unsigned char bClear, unsigned int nBuffers) override;
  void GetClearEveryFrame(unsigned char& bClear, unsigned int& nBuffers) const override;
  /// Patches, which have coordinates of their own, are lit from there towards their zero, other pictures towards the
  /// movable origin.
  void SetSunPosition(QXVector3d const& vecPosition) override {
    m_vecSun = vecPosition;
    m_bHostLight = true;
  }
  QXVector3d GetSunPosition() const override { return m_vecSun; }
  void SetSunLightEnable(unsigned char bEnable) override { m_bSunLightEnable = bEnable; }
  void SetBackgroundColor(QXColorValue3D const& color) override;
  /// Reads one pixel, counted from the lower left corner and inside of the target: blue, green, red, alpha.
  unsigned char ReadPixel(int nX, int nY, unsigned char (&nPixel)[4]);
  unsigned char CopyToMemory(unsigned char* pPixels, unsigned int nByteCount) override;
  void ApplyCameraToTarget(QXCamera*, int, int) override {}
  void SetRenderDepth(unsigned char bEnable) override { m_bRenderDepth = bEnable != 0; }
  unsigned char IsRenderDepth() const override { return m_bRenderDepth && m_pOgreTarget; }
  /// Draws the depths anew when it is asked, so that frames cost nothing more: what has moved since then has moved.
  unsigned char CopyDepthToMemory(float* pDepths, unsigned int nValueCount) override;
  /// A window has none.
  QXTexture* GetTexture() const override;
  void SetAmbientLight(QXColorValue3D const& color) override {
    m_AmbientLight = color;
    m_bHostLight = true;
  }
  void SetDiffuseLight(QXColorValue3D const& color) override {
    m_DiffuseLight = color;
    m_bHostLight = true;
  }

protected:
  QXOgreRenderTarget(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName,
      QdcUnicodeString const& strSceneName, unsigned int nWidth, unsigned int nHeight);

  /// Takes up an OGRE target with a viewport of its own; null drops the one held.
  void SetOgreTarget(Ogre::RenderTarget* pOgreTarget);
  Ogre::RenderTarget* GetOgreTarget() const { return m_pOgreTarget; }
  int GetSamples() const { return m_nSamples; }
  QXOgreGraphics3D* GetRenderer() const { return m_pRenderer; }
  /// Destroys the OGRE target after SetOgreTarget(nullptr).
  virtual void ReleaseDevice() = 0;
  /// Gives the OGRE target another size; throws what OGRE throws.
  virtual void ResizeDevice(unsigned int nWidth, unsigned int nHeight) = 0;
  /// Makes the OGRE target, in place of the one there is, which stays if this throws what OGRE throws.
  virtual void MakeDevice(unsigned int nWidth, unsigned int nHeight, int nSamples) = 0;
  /// Makes the drawn picture readable.
  virtual void FinishPicture() = 0;
  virtual void ShowPicture(unsigned char bWaitForVerticalBlank) = 0;
  /// Reads a part of the picture, counted from the upper left corner; throws what OGRE throws.
  virtual void ReadPicture(
      unsigned int nLeft, unsigned int nTop, unsigned int nWidth, unsigned int nHeight, unsigned char* pPixels) = 0;
  /// Whether the colours of the target's texture, if it has one, are multiplied by their alpha from now on.
  void TellTexture(bool bPremultiplied);

private:
  /// Draws a scene into the viewport as that stands, for the queries that run.
  QXOgreCounts DrawCounted(QXOgreScene& scene, QXOgreView const& view, unsigned char bDrawables);
  /// Places the OGRE viewport on the pixels of the library's, which counts from the bottom.
  void PlaceViewport(QXViewport const& viewport);
  /// @param light  receives what lights a view of the scene
  void MakeLight(QXOgreView const& view, QXOgreScene& scene, QXOgreLight& light) const;
  /// Puts that in place for what is drawn next.
  void SetLight(QXOgreView const& view, QXOgreScene& scene);
  /// Everything between OGRE's target and the picture that can be read.
  void DrawPicture();
  /// Whether the next picture glows.
  bool IsGlowing() const;

  QXOgreGraphics3D* m_pRenderer;
  Ogre::RenderTarget* m_pOgreTarget;
  Ogre::Viewport* m_pOgreViewport;
  /// Where the viewports draw: m_pOgreViewport, or that of the effect.
  Ogre::Viewport* m_pDrawnViewport;
  std::unique_ptr<QXOgreBloom> m_pBloom;
  bool m_bBloom;
  /// Null until a query has run; of the OGRE target.
  std::unique_ptr<QXOgreSampleCounts> m_pSampleCounts;
  QXVector3d m_vecSun;
  QXColorValue3D m_AmbientLight;
  QXColorValue3D m_DiffuseLight;
  int m_nSamples;
  /// The host has said where the sun stands or how bright it is.
  bool m_bHostLight;
  /// While a patch is drawn.
  bool m_bPatch;
  bool m_bRenderDepth;
  bool m_bIdentifiers;
  bool m_bOverlaysShown;
};

}  // namespace QXC
