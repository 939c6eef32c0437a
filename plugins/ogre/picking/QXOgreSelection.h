/// @file
/// Selection passes.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <plugins/ogre/picking/QXOgrePickFilter.h>
#include <plugins/ogre/picking/QXOgrePickResult.h>

namespace QXC {

class QXOgreGraphics3D;
class QXOgrePickSurface;
class QXOgreRenderTarget;
class QXOgreScene;

/// Draws identifiers and finds what lies under pixels. A pass draws only its rectangle and 32 pixels around it, with a
/// view that is narrowed to them, and reads only those back: points up to 64 pixels wide are found to their edges. It
/// needs the device and ends before it.
class QXOgreSelection final {
public:
  explicit QXOgreSelection(QXOgreGraphics3D& graphics3D);
  ~QXOgreSelection();
  QXOgreSelection(QXOgreSelection const&) = delete;
  QXOgreSelection& operator=(QXOgreSelection const&) = delete;

  /// Pixels; what is below 0 or no number counts as 0, at most MAX_TOLERANCE.
  void SetTolerance(double dPixels);
  void SetEnabled(QdcUnicodeString const& strSceneName, bool bEnable);

  /// Draws the part of the target that lies inside a rectangle, all viewports in their order.
  /// @param filter  its numbering is filled in here
  /// @param bAll  also scenes whose objects cannot be selected
  /// @return  0 if nothing could be drawn; the result then has nothing in it
  unsigned char Draw(QXOgreRenderTarget& target, QXOgrePixelRect const& rect, QXOgrePickFilter filter, bool bAll,
      QXOgrePickResult& result);
  /// Draws what lies within the tolerance of a window point and finds the nearest pixel that has an identifier: of
  /// those that are equally near on the screen the one that is nearest to the eye.
  /// @param pMapBounds  null, or where in the world what is of a layer counts
  /// @return  the identifier, 0 for none
  unsigned int Find(QXOgreRenderTarget& target, double dX, double dY, QXOgrePickFilter const& filter,
      std::map<int, QdcRect2D> const* pMapBounds, QXOgrePickResult& result, QXVector3d& vecPosition);
  /// Along a ray of a scene, whose length ends with what there is. The direction has any length above 0.
  unsigned int FindAlong(
      QXOgreScene& scene, QXVector3d const& vecOrigin, QXVector3d const& vecDirection, QXVector3d& vecPosition);

  /// Depths of all pixels, top row first. 0 if they cannot be drawn.
  unsigned char CopyDepths(QXOgreRenderTarget& target, float* pDepths);

  /// The pass that hosts read.
  QXOgrePickResult& GetKept() { return m_Kept; }
  QXOgrePickResult const& GetKept() const { return m_Kept; }
  /// What BeginSelection asked for; null: no pass is open. Not looked into before the pass is drawn, since it may die.
  QXOgreRenderTarget* m_pOpenTarget;
  QXOgrePixelRect m_OpenRect;

  static constexpr int MAX_TOLERANCE = 64;

private:
  /// One that has room for a rectangle. That of single clicks stays as small as it is.
  QXOgrePickSurface& DemandSurface(int nWidth, int nHeight);
  /// Draws a rectangle of the target.
  void DrawViewports(QXOgreRenderTarget& target, QXOgrePixelRect const& rect, QXOgrePickFilter const& filter, bool bAll,
      QXOgrePickSurface& surface, QXOgrePickResult& result);

  QXOgreGraphics3D& m_Graphics3D;
  std::unique_ptr<QXOgrePickSurface> m_pSmall;
  std::unique_ptr<QXOgrePickSurface> m_pLarge;
  std::set<QdcUnicodeString> m_setDisabled;
  double m_dTolerance;
  QXOgrePickResult m_Kept;
  std::vector<unsigned char> m_arrIdentifiers;
  std::vector<float> m_arrPlaces;
};

}  // namespace QXC
