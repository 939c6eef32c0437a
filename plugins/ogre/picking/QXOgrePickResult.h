/// @file
/// What a selection pass found.
#pragma once

#include <cstddef>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <plugins/ogre/QXOgreView.h>

namespace QXC {

/// Whole pixels of a target, counted from its lower left corner.
struct QXOgrePixelRect {
  int m_nLeft = 0;
  int m_nBottom = 0;
  int m_nWidth = 0;
  int m_nHeight = 0;

  bool IsEmpty() const { return m_nWidth <= 0 || m_nHeight <= 0; }
  bool Contains(int nX, int nY) const {
    return nX >= m_nLeft && nY >= m_nBottom && nX - m_nLeft < m_nWidth && nY - m_nBottom < m_nHeight;
  }
  /// What both have in common; empty if that is nothing.
  QXOgrePixelRect Intersect(QXOgrePixelRect const& other) const;
};

/// Identifiers and places of a rectangle of pixels. It outlives the views that were drawn.
class QXOgrePickResult final {
public:
  /// Starts anew, with nothing seen.
  void Reset(QXOgrePixelRect const& rect);
  /// Notes that a view is drawn into a rectangle, which may reach beyond that of the result.
  /// @return  its number, for QXOgreMaterials::SetViewNumber: of views that clear nothing both may be seen
  int AddView(QXOgrePixelRect const& rect, QXOgreView const& view);
  /// Takes over what the views drew.
  /// @param drawn    what stands in the arrays; the rectangle of the result lies inside it
  /// @param nStride  pixels from one row of the arrays to the next
  void Take(std::vector<unsigned char> const& arrIdentifiers, std::vector<float> const& arrPlaces,
      QXOgrePixelRect const& drawn, std::size_t nStride);

  QXOgrePixelRect const& GetRect() const { return m_Rect; }
  /// The identifier as it was drawn, 0 for none and outside of the rectangle.
  unsigned int GetIdentifier(int nX, int nY) const;
  /// Whether anything was drawn there, with an identifier or without.
  bool IsDrawn(int nX, int nY) const;
  /// The window's depth, 1 where nothing was drawn.
  double GetDepth(int nX, int nY) const;
  /// Where the ray through the middle of the pixel meets what was drawn, in world coordinates. 0 if nothing was.
  /// Error: that of floats for the way from the eye, or, of parallel views, from the near plane to the far one: about a
  /// millionth of it, along the ray. Everything else is computed in double.
  unsigned char GetPosition(int nX, int nY, QXVector3d& vecPosition) const;

private:
  struct Part {
    QXOgrePixelRect m_Rect;
    QXMatrix4d m_matView;
    QXMatrix4d m_matProjection;
    QXVector3d m_vecOrigin;
    double m_dVerticalExaggeration;
  };
  std::size_t PlaceOf(int nX, int nY) const;

  QXOgrePixelRect m_Rect;
  std::vector<Part> m_arrParts;
  std::vector<unsigned int> m_arrIdentifiers;
  /// Depth, w and number of the view of each pixel.
  std::vector<float> m_arrPlaces;
};

}  // namespace QXC
