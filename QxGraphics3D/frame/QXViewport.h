/// @file
/// A rectangle of a render target with the camera that fills it.
#pragma once

#include <memory>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXCamera;
class QXRenderTarget;

/// A rectangle of a render target and the camera that draws into it. Concrete and not for deriving: the destructor
/// is its only virtual operation. Created and deleted by the target that owns it (QXRenderTarget::AddViewport).
/// The relative rectangle (fractions of the target) is what a host sets; the pixel rectangle is derived from it by
/// UpdateDimensions and by nothing else, so a renderer calls that after it has resized a target.
/// All members are public: a plug-in's camera reads background and clear flags while it renders the viewport.
/// Threads: the render thread.
class QXGRAPHICS3D_API QXViewport final {
public:
  /// An unfinished viewport: no camera, no target, white background, zero rectangle.
  QXViewport();
  /// A viewport of a target: black background, pixel rectangle derived from the target's size, and the camera told
  /// of its viewport (QXCamera::NotifyViewport).
  /// @param pCamera  not owned; null gives a viewport that draws nothing
  /// @param pTarget  the owner; null leaves the pixel rectangle 0
  /// @param dLeft,dBottom,dWidth,dHeight  fractions of the target
  /// @param nZOrder  drawing order in the target, remembered as original order too
  QXViewport(QXCamera* pCamera, QXRenderTarget* pTarget, double dLeft, double dBottom, double dWidth, double dHeight,
      int nZOrder);
  /// A free-standing pixel rectangle with a white background, without camera and target.
  QXViewport(int nLeft, int nBottom, int nWidth, int nHeight);
  /// Copies member by member; the copies share one depth buffer until either derives a new one.
  QXViewport(QXViewport const& other);
  QXViewport& operator=(QXViewport const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Releases the depth buffer; camera and target are not touched.
  virtual ~QXViewport();

  /// Null if none was set. Not owned.
  QXCamera* GetCamera() const { return m_pCamera; }
  /// Stores the camera and tells it of this viewport; null leaves the viewport without one.
  void SetCamera(QXCamera* pCamera);
  QXRenderTarget* GetTarget() const { return m_pTarget; }

  /// Left edge, fraction of the target's width.
  double GetLeft() const { return m_dRelLeft; }
  /// Bottom edge, fraction of the target's height.
  double GetBottom() const { return m_dRelBottom; }
  /// Width, fraction of the target's; 1.0 where exactly 0.0 is stored, since hosts divide by it.
  double GetWidth() const { return m_dRelWidth == 0.0 ? 1.0 : m_dRelWidth; }
  /// Height, fraction of the target's; 1.0 where exactly 0.0 is stored.
  double GetHeight() const { return m_dRelHeight == 0.0 ? 1.0 : m_dRelHeight; }
  /// The four setters store only: the pixel rectangle follows at the next UpdateDimensions.
  void SetRelLeft(double dLeft) { m_dRelLeft = dLeft; }
  void SetRelBottom(double dBottom) { m_dRelBottom = dBottom; }
  void SetRelWidth(double dWidth) { m_dRelWidth = dWidth; }
  void SetRelHeight(double dHeight) { m_dRelHeight = dHeight; }

  /// Pixels.
  int GetActualLeft() const { return m_nActLeft; }
  int GetActualBottom() const { return m_nActBottom; }
  /// Pixels; 1 where 0 is stored, since projections divide by it.
  int GetActualWidth() const { return m_nActWidth == 0 ? 1 : m_nActWidth; }
  int GetActualHeight() const { return m_nActHeight == 0 ? 1 : m_nActHeight; }
  /// The four setters store only; the depth buffer keeps the size it has.
  void SetActualLeft(int nLeft) { m_nActLeft = nLeft; }
  void SetActualBottom(int nBottom) { m_nActBottom = nBottom; }
  void SetActualWidth(int nWidth) { m_nActWidth = nWidth; }
  void SetActualHeight(int nHeight) { m_nActHeight = nHeight; }

  /// Current order in the target; a target in the ordered multi-viewport mode renumbers it every frame.
  int GetZOrder() const { return m_nZOrder; }
  void SetZOrder(int nZOrder) { m_nZOrder = nZOrder; }
  /// Order at creation, which renumbering leaves alone.
  int GetOriZOrder() const { return m_nOriZOrder; }
  void SetOriZOrder(int nZOrder) { m_nOriZOrder = nZOrder; }
  int GetMinZ() const { return m_nMinZ; }
  int GetMaxZ() const { return m_nMaxZ; }

  /// Derives the pixel rectangle from the relative one and the target's size, each edge truncated toward zero (values
  /// beyond int stop at its ends), and marks the depth buffer as not fitting any more. Nothing without a target.
  void UpdateDimensions();
  /// One frame of the viewport: the camera renders its scene into it. Nothing without a camera.
  void Update();

  /// Makes the depth buffer fit, if it does not: 4 zeroed bytes a pixel of the stored pixel rectangle. A negative
  /// size or memory that is not to be had leaves no buffer.
  void InitBufferCache();
  /// The depth buffer, m_nActHeight rows of m_nActWidth values of 4 bytes, made at first use and kept until the next
  /// UpdateDimensions. Belongs to the viewport; null where InitBufferCache could not make one.
  unsigned char* GetDepthBuffer();

  QXCamera* m_pCamera;
  QXRenderTarget* m_pTarget;
  double m_dRelLeft;
  double m_dRelBottom;
  double m_dRelWidth;
  double m_dRelHeight;
  int m_nActLeft;
  int m_nActBottom;
  int m_nActWidth;
  int m_nActHeight;
  int m_nZOrder;
  int m_nMinZ;
  int m_nMaxZ;
  QXColorValue3D m_BackgroundColor;
  /// 1: the camera clears m_nClearBuffers before it draws.
  unsigned char m_bClearEveryFrame;
  /// Bits of the buffers to clear: 1 colour, 2 depth.
  unsigned int m_nClearBuffers;
  /// Left for the plug-in.
  unsigned char m_bFlagA;
  /// Handed to QXCamera::RenderScene as its second argument.
  unsigned char m_bRenderSceneFlag;
  /// Left for the plug-in.
  unsigned char m_bFlagB;
  /// Left for the plug-in.
  unsigned char m_bFlagC;
  QdcUnicodeString m_strName;
  /// From malloc, released with free by whichever copy of the viewport dies last.
  std::shared_ptr<unsigned char> m_pDepthBuffer;
  unsigned char m_bBufferCacheValid;
  int m_nOriZOrder;

  /// Switches and throttle (frames a second) that a host and a plug-in agree on; the library reads none of them.
  static unsigned char ms_bSceneRenderAllow;
  static unsigned char ms_bSceneUpdateAllow;
  static int ms_nThrottleFpsHz;
};

}  // namespace QXC
