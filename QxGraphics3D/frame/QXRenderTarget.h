/// @file
/// One place that the renderer draws into: a window, a texture or an off-screen buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/QXRenderTargetListener.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXCamera;
class QXFrustum;
class QXGraphics3D;
class QXPlane;
class QXTexture;
class QXViewport;

/// How a target treats several viewports. Any other value survives and behaves as MVM_INDEPENDENT.
enum MultiViewportMode : int {
  /// Viewports keep their keys and are drawn as they are.
  MVM_INDEPENDENT = 0,
  /// Viewports are renumbered densely every frame and each camera is told of its viewport before it draws, so that
  /// one camera may serve several viewports.
  MVM_ORDERED = 4
};

/// A window, texture or off-screen buffer with its viewports and frame statistics. A plug-in derives its concrete kinds
/// and fills the pure operations; the library gives the viewport dictionary, the update sequence and the statistics.
/// Ownership: the target owns its viewports, and belongs to the renderer from QXGraphics3D::AttachRenderTarget on.
/// Copies are shallow: they share viewports and companions, and only one copy may be destroyed.
/// All members are public, since the plug-in's renderer and cameras, classes of their own, read and fill them.
/// Threads: the render thread; no lock. Failure: silent, told by null or by nothing happening.
class QXGRAPHICS3D_API QXRenderTarget {
public:
  struct FrameStats {
    double lastFPS;                ///< Frames per second over the last measuring period
    double avgFPS;                 ///< Running average: each period weighs half
    double bestFPS;                ///< Highest lastFPS
    double worstFPS;               ///< Lowest lastFPS
    std::uint64_t bestFrameTime;   ///< Shortest frame, milliseconds
    std::uint64_t worstFrameTime;  ///< Longest frame, milliseconds
    int triangleCount;             ///< Triangles of the last frame; the plug-in fills it, ResetStatistics zeroes it
  };

  /// Where a walk over the viewports stands.
  using ViewportPosition = QdcDict<int, QXViewport*, std::less<int>>::Position;

  /// Members as declared below, statistics reset, no viewport.
  QXRenderTarget();
  QXRenderTarget(QXRenderTarget const& other);
  QXRenderTarget& operator=(QXRenderTarget const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Deletes the viewports and m_pOsgbSelShadowTexture. The vertex selection companion lives on: only its setter
  /// replaces it.
  virtual ~QXRenderTarget();

  /// Hosts switch multisampling of the scene; empty here.
  virtual void SetSceneAntialias(unsigned char bEnable);
  /// 0 here.
  virtual unsigned char GetSceneAntialias() const;
  /// Samples a pixel; empty here.
  virtual void SetSceneAntialiasValue(int nSamples);
  /// 0 here.
  virtual int GetSceneAntialiasValue() const;
  /// The key of the target in the renderer's registry.
  virtual QdcUnicodeString const& GetName() const;
  /// The scene that the target's cameras draw when they name none of their own.
  virtual QdcUnicodeString const& GetSceneName() const;
  /// The raw members, a zero size included.
  virtual void GetMetrics(unsigned int& nWidth, unsigned int& nHeight, unsigned int& nColourDepth) const;
  /// Pixels; 1 where 0 is stored, since aspect ratios divide by it.
  virtual unsigned int GetWidth() const;
  virtual unsigned int GetHeight() const;
  /// Both store only: viewports follow at their UpdateDimensions.
  virtual void SetWidth(unsigned int nWidth);
  virtual void SetHeight(unsigned int nHeight);
  /// The host tells that the window has changed its size; the plug-in resizes its buffers, stores the size and calls
  /// UpdateDimensions of each viewport. Empty here.
  virtual void ReSize(unsigned int nWidth, unsigned int nHeight);
  /// Bits a pixel.
  virtual unsigned int GetColourDepth() const;
  virtual void SetColourDepth(unsigned int nColourDepth);
  /// One frame of the target: renumbers the viewports where the mode asks for it, lets the plug-in prepare
  /// (BeginViewportUpdate), updates each viewport in key order from the position that this left, passes on pending
  /// camera notifications and closes the frame in the statistics. The renderer's update loop calls it.
  /// Cost: linear in the viewports; allocates at most in the first frame after viewports came or went.
  virtual void Update();
  /// Shows the finished frame of a window; the host calls it after UpdateAllRenderTargets. A target without a front
  /// buffer has nothing to do. @param bWaitForVerticalBlank  1: return only when the display has taken the frame
  virtual void SwapBuffers(unsigned char bWaitForVerticalBlank) = 0;
  /// 1: draws into a texture or off-screen buffer, 0: into a window. Hosts ask it before they route input to a target.
  virtual unsigned char IsTextureTarget() const = 0;
  /// Update calls it after a viewport whose camera had m_bTargetNotifyPending set, then clears that flag: the place to
  /// renew what depends on the camera (shadow cameras, level-of-detail state).
  virtual void NotifyCameraStateChange(unsigned char bChanged) = 0;
  /// Creates a viewport under nZOrder; if one stands there already, that one is returned as it is and the other
  /// arguments are ignored. The rectangle is in fractions of the target. The result belongs to the target.
  virtual QXViewport* AddViewport(
      QXCamera* pCamera, int nZOrder, double dLeft, double dBottom, double dWidth, double dHeight);
  virtual unsigned short GetNumViewports() const;
  /// The viewport under the key nIndex, which after removals is a z-order and not a position; null if there is none.
  virtual QXViewport* GetViewport(unsigned short nIndex) const;
  /// Deletes the viewport under nZOrder; nothing if there is none.
  virtual void RemoveViewport(int nZOrder);
  virtual void RemoveAllViewports();
  virtual void SetMultiViewportMode(MultiViewportMode eMode);
  virtual MultiViewportMode GetMultiViewportMode() const;
  virtual FrameStats const& GetStatistics() const;
  virtual void GetStatistics(double& dLastFPS, double& dAvgFPS, double& dBestFPS, double& dWorstFPS) const;
  virtual double GetLastFPS() const;
  virtual double GetAverageFPS() const;
  virtual double GetBestFPS() const;
  virtual double GetWorstFPS() const;
  /// Milliseconds.
  virtual std::uint64_t GetBestFrameTime() const;
  virtual std::uint64_t GetWorstFrameTime() const;
  /// Starts the statistics anew, with the measuring period beginning now.
  virtual void ResetStatistics();
  /// Device objects of the plug-in by name ("WINDOW" and the like), written to the memory at pData, whose type the
  /// name implies. Empty here.
  virtual void GetCustomAttribute(QdcUnicodeString const& strName, void* pData);
  virtual void SetDebugText(QdcUnicodeString const& strText);
  virtual void SetPriority(unsigned char nPriority);
  virtual unsigned char GetPriority() const;
  virtual unsigned char IsActive() const;
  virtual unsigned char IsAlwaysActive() const;
  virtual void SetActive(unsigned char bActive);
  virtual void SetAlwaysActive(unsigned char bAlwaysActive);
  virtual void SetAutoUpdated(unsigned char bAutoUpdated);
  virtual unsigned char IsAutoUpdated() const;
  /// Writes the picture to prefix + time + suffix and returns that name; here: writes nothing, returns "".
  virtual QdcUnicodeString WriteContentsToTimestampedFile(
      QdcUnicodeString const& strPrefix, QdcUnicodeString const& strSuffix);
  /// m_Stats.triangleCount.
  virtual int GetTriangleCount() const;
  /// The renderer tells every target that a camera goes away; empty here, and the viewports keep their pointers.
  virtual void NotifyCameraRemoved(QXCamera const* pCamera);
  /// 1: the window whose end is the end of the program; 0 here.
  virtual unsigned char IsPrimary() const;
  /// Update calls it after the renumbering and before the first viewport, with the start of the viewports. The plug-in
  /// makes the target current here, and may move the position to skip viewports: the walk goes on from where it is
  /// left.
  virtual void BeginViewportUpdate(ViewportPosition& position) = 0;
  /// Size of the display that the window stands on, pixels; 0 here.
  virtual unsigned int GetDisplayWidth() const;
  virtual unsigned int GetDisplayHeight() const;
  /// Bits of nBuffers: 1 colour, 2 depth. Empty here.
  virtual void SetClearEveryFrame(unsigned char bClear, unsigned int nBuffers);
  /// Always 1 and 3 (colour and depth) here.
  virtual void GetClearEveryFrame(unsigned char& bClear, unsigned int& nBuffers) const;
  /// Position of the sun in scene coordinates; empty here, and the getter gives the zero vector.
  virtual void SetSunPosition(QXVector3d const& vecPosition);
  virtual QXVector3d GetSunPosition() const;
  /// Empty here: the plug-in keeps m_bSunLightEnable, which the non-virtual getter reads.
  virtual void SetSunLightEnable(unsigned char bEnable);
  virtual void SetShadowEnable(unsigned char bEnable);
  /// 0 here.
  virtual unsigned char GetShadowEnable() const;
  /// Scene units from the eye; empty here, and the getter gives 0.
  virtual void SetShadowVisibleDistance(double dDistance);
  virtual double GetShadowVisibleDistance() const;
  /// Distances from the eye at which the three shadow cascades end; the zero vector here.
  virtual QXVector3d GetShadowSplitPoints() const;
  /// Background of all viewports; empty here.
  virtual void SetBackgroundColor(QXColorValue3D const& color);
  /// Reads the finished picture back: GetWidth() * GetHeight() pixels of 4 bytes blue, green, red, alpha, top row
  /// first, no padding. Hosts call it after the frame. The memory stays the caller's.
  /// @return  0, with the memory untouched, if nByteCount is too small or the device fails
  virtual unsigned char CopyToMemory(unsigned char* pPixels, unsigned int nByteCount) = 0;
  /// The mirror of CopyToMemory: replaces the picture. Empty here. The memory is read before the call returns.
  virtual void CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount);
  /// Update calls it in the mode MVM_ORDERED, before each viewport, after the camera was told of that viewport: the
  /// plug-in makes the camera's matrices current. Update passes 0 and 0.
  /// @param nOffsetX,nOffsetY  shift of the picture in pixels, for pictures larger than the target drawn in tiles
  virtual void ApplyCameraToTarget(QXCamera* pCamera, int nOffsetX, int nOffsetY) = 0;
  /// Full-screen effect by name, applied after the scene; the four are empty here.
  virtual void AddGlobalEffect(QdcUnicodeString const& strEffect);
  virtual void RemoveGlobalEffect(QdcUnicodeString const& strEffect);
  /// Limits an effect to what a frustum sees. The frustum is copied.
  virtual void SetGlobalEffectFrustum(QdcUnicodeString const& strEffect, QXFrustum const& frustum);
  virtual void RemoveGlobalEffectFrustum(QdcUnicodeString const& strEffect);
  /// Asks for the depth of every frame to be kept for CopyDepthToMemory; empty here.
  virtual void SetRenderDepth(unsigned char bEnable);
  /// What SetRenderDepth asked for, as far as the device gives it. Hosts ask it before they pick by depth.
  virtual unsigned char IsRenderDepth() const = 0;
  /// Reads the depth of the last frame back: GetWidth() * GetHeight() values 0 (near) to 1 (far), top row first.
  /// Hosts call it after the frame to turn pixels into positions. The memory stays the caller's.
  /// @return  0, with the memory untouched, if no depth is kept, nValueCount is too small or the device fails
  virtual unsigned char CopyDepthToMemory(float* pDepths, unsigned int nValueCount) = 0;
  /// What lies on the negative side of any of the planes is not drawn. The planes are copied. Empty here.
  virtual void SetCustomClipPlanes(QXPlane const* pPlanes, unsigned int nCount);
  virtual void ClearCustomClipPlanes();
  /// Gives the camera back the viewport that it had before it drew for another target; empty here.
  virtual void ResetCameraViewport(QXCamera* pCamera);
  /// The texture that the target draws into, for drawables that show it; null for a window. Belongs to the target.
  virtual QXTexture* GetTexture() const = 0;
  /// The device's number of that texture; -1 here.
  virtual int GetTextureID() const;
  /// Shadow cameras of the target: the plug-in makes, renews and drops them. Empty here.
  virtual void CreateShadowSettingInfo();
  /// Appends the shadow cameras, which stay the target's, to the array; 0 if there are none, as here.
  virtual unsigned char GetShadowTextureCameras(QdcArray<QXCamera*>& arrCameras) const;
  virtual void UpdateShadowTextureCameras();
  virtual void DeleteShadowSettingInfo();
  /// Light of the scene as this target shows it; both empty here.
  virtual void SetAmbientLight(QXColorValue3D const& color);
  virtual void SetDiffuseLight(QXColorValue3D const& color);
  /// Counted request for a depth texture of the scene by whoever samples it (water, labels behind terrain); empty here.
  virtual void AddDepthTextureRequest();
  virtual void RemoveDepthTextureRequest();
  virtual unsigned char IsRenderSceneWithTextureBuffer() const;
  virtual void SetLogDepthEnable(unsigned char bEnable);
  virtual unsigned char IsLogDepthEnable() const;
  /// Not owned; null detaches.
  virtual void SetListener(QXRenderTargetListener* pListener);

  QXRenderTargetListener* GetListener() const { return m_pListener; }
  QdcUnicodeString const& GetDebugText() const { return m_strDebugText; }
  /// Factor on heights of the scene.
  double GetVerticalExaggeration() const { return m_dVerticalExaggeration; }
  void SetVerticalExaggeration(double dFactor) { m_dVerticalExaggeration = dFactor; }
  HWND GetWindow() const { return m_hWindow; }
  HWND GetWindow3DHandle() const { return m_hWindow; }
  void SetDisplay3D(HDC hDisplay) { m_hDisplay3D = hDisplay; }
  /// Not owned.
  QXGraphics3D* GetGraphics3D() const { return m_pGraphics3D; }
  void SetGraphics3D(QXGraphics3D* pGraphics3D) { m_pGraphics3D = pGraphics3D; }
  /// 1: the next frame updates the target even if it is inactive, and clears the flag.
  unsigned char IsCurTargetRefresh() const { return m_bCurTargetRefresh; }
  void SetCurTargetRefresh(unsigned char bRefresh) { m_bCurTargetRefresh = bRefresh; }
  unsigned char GetSunLightEnable() const { return m_bSunLightEnable; }
  void SetRenderStencilSM(unsigned char bEnable) { m_bRenderStencilSM = bEnable; }
  /// Owned by this target.
  QXRenderTarget* GetOsgbSelShadowTexture() const { return m_pOsgbSelShadowTexture; }
  QdcRect2D GetOsgbSelShadowBound() const { return m_rcOsgbSelShadowBound; }
  void SetOsgbSelShadowBound(QdcRect2D const& rcBound) { m_rcOsgbSelShadowBound = rcBound; }
  /// Returns the former state, so that a caller can restore it.
  RenderStateSet SetRenderState(RenderStateSet eState);
  /// Companions, attached to the renderer while this target draws. Reflection and selection are not owned.
  QXRenderTarget* GetReflectRenderTarget() const { return m_pReflectRenderTarget; }
  void SetReflectRenderTarget(QXRenderTarget* pTarget) { m_pReflectRenderTarget = pTarget; }
  QXRenderTarget* GetSelectionRenderTarget() const { return m_pSelectionRenderTarget; }
  void SetSelectionRenderTarget(QXRenderTarget* pTarget) { m_pSelectionRenderTarget = pTarget; }
  QXRenderTarget* GetVertexSelectionRenderTarget() const { return m_pVertexSelectionRenderTarget; }
  /// Unlike the other two takes the companion over: the one held before is deleted, unless it is the same.
  void SetVertexSelectionRenderTarget(QXRenderTarget* pTarget);
  void SetRenderToTextureWithManual(unsigned char bEnable) { m_bRenderToTextureWithManual = bEnable; }

  /// In the mode MVM_ORDERED makes the viewports' keys dense from 0, and moves the viewport at nIndex (0, 1 or 2) to
  /// the top. If a viewport of exactly half the target's height then stands anywhere but first or third, the first two
  /// change places, so that an inset is drawn behind the main view. Nothing in other modes, or if nIndex is the last.
  /// @param nIndex  key of the viewport to move; any other value, as Update's -1, only renumbers
  void MoveViewPortToLast(int nIndex);
  /// Closes one frame in the statistics; rates are computed once a period of more than 1000 ms has passed.
  void UpdateStats();

  QdcUnicodeString m_strName;
  QdcUnicodeString m_strSceneName;
  unsigned char m_nPriority;
  unsigned int m_nWidth;
  unsigned int m_nHeight;
  unsigned int m_nColourDepth;
  FrameStats m_Stats;
  QdcUnicodeString m_strDebugText;
  /// Start of the measuring period and time of the last frame, milliseconds of QdcTime::GetMillisecond.
  std::uint64_t m_nLastSecond;
  std::uint64_t m_nLastTime;
  unsigned int m_nFrameCount;
  double m_dVerticalExaggeration;
  unsigned char m_bActive;
  unsigned char m_bAlwaysActive;
  unsigned char m_bAutoUpdated;
  /// By z-order; owned.
  QdcDict<int, QXViewport*, std::less<int>> m_Viewports;
  HWND m_hWindow;
  HDC m_hDisplay3D;
  QXGraphics3D* m_pGraphics3D;
  unsigned char m_bCurTargetRefresh;
  unsigned char m_bSunLightEnable;
  /// Left for the plug-in.
  unsigned char m_bFlagA;
  unsigned char m_bRenderStencilSM;
  QXRenderTarget* m_pOsgbSelShadowTexture;
  QdcRect2D m_rcOsgbSelShadowBound;
  RenderStateSet m_eRenderState;
  QXRenderTarget* m_pReflectRenderTarget;
  QXRenderTarget* m_pSelectionRenderTarget;
  QXRenderTarget* m_pVertexSelectionRenderTarget;
  unsigned char m_bRenderToTextureWithManual;
  MultiViewportMode m_eMultiViewportMode;
  /// Left for the plug-in.
  unsigned char m_bFlagB;
  unsigned char m_bRenderSceneWithTextureBuffer;
  unsigned char m_bLogDepthEnable;
  QXRenderTargetListener* m_pListener;
  /// Left for the plug-in.
  unsigned char m_bFlagC;

  /// Reference count of targets for plug-ins that share a device between them; the library does not use it.
  static unsigned int ms_nRefAdd;

private:
  using ViewportEntry = std::pair<int const, QXViewport*>;

  /// The entries of m_Viewports in order. Belongs to one dictionary: a copied target starts without.
  struct ViewportList {
    static constexpr std::uint64_t Stale = ~std::uint64_t{0};

    ViewportList() = default;
    ViewportList(ViewportList const&) {}
    ViewportList& operator=(ViewportList const&) {
      m_nChangeCount = Stale;
      return *this;
    }

    ViewportEntry const* const* GetBegin() const { return m_arrEntries.data(); }
    ViewportEntry const* const* GetEnd() const { return m_arrEntries.data() + m_arrEntries.size(); }

    std::vector<ViewportEntry const*> m_arrEntries;
    /// What QdcDict::GetChangeCount was when the entries were listed.
    std::uint64_t m_nChangeCount = Stale;
    /// Whether the keys are 0, 1, 2.. without a gap.
    unsigned char m_bDense = 0;
  };

  void ListViewports() {
    if (m_List.m_nChangeCount != m_Viewports.GetChangeCount()) {
      RebuildList();
    }
  }
  void RebuildList();
  ViewportEntry const* const* FindInList(ViewportPosition const& position) const;
  ViewportEntry const* const* FindInListBehind(int nKey) const;
  /// The half-height viewport that makes the first two change places, 0 for none; -1 if keys have gaps or a viewport
  /// is null, so that StoreDensely must come first.
  int NumberViewports();
  void EvaluatePeriod(std::uint64_t nNow, std::uint64_t nPeriod);
  void MoveToTop(int nKey);
  void StoreDensely();
  void SwapFirstTwo();

  ViewportList m_List;
};

}  // namespace QXC
