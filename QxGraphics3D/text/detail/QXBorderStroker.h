/// @file
/// One border of a stroked outline.
#pragma once

#include <QxGraphics3D/text/detail/QXTrigMemo.h>

#include FT_OUTLINE_H
#include FT_STROKER_H

#include <cstddef>
#include <vector>

namespace QXC::detail {

/// Strokes closed outlines with a round pen of one pixel radius, and makes only the border that is asked for.
///
/// FreeType's stroker always makes both borders, and asks for every angle anew. This one does the same arithmetic for one
/// border: its points are those of FT_Stroker_ExportBorder to the last bit, for round joins. Who relies on that has to
/// compare now and then, because another FreeType may reckon otherwise; QXGlyphRasteriser does.
///
/// Bounds:  keeps its arrays, of as many points as the largest border had.
/// Threads: no lock.
class QXBorderStroker {
public:
  /// False for an outline that is none: a curve without its end, or one that starts with a cubic control point.
  bool Stroke(FT_Outline const& outline, FT_StrokerBorder eBorder);

  // The border, until the next call.
  std::vector<FT_Vector> const& GetPoints() const { return m_arrPoints; }
  std::vector<char> const& GetTags() const { return m_arrTags; }
  /// Places of the contours' last points.
  std::vector<std::size_t> const& GetEnds() const { return m_arrEnds; }

private:
  bool StrokeContour(FT_Outline const& outline, std::size_t nFirst, std::size_t nLast);
  void Begin(FT_Vector const& start);
  void End();
  void LineTo(FT_Vector const& to);
  void ConicTo(FT_Vector const& control, FT_Vector const& to);
  void CubicTo(FT_Vector const& control1, FT_Vector const& control2, FT_Vector const& to);

  /// The first point of a contour's border.
  void AddStart(FT_Angle nAngle, FT_Vector const& line);
  /// What joins the segment that ends at m_Center to one that leaves at nAngle; line is its vector if it is a line.
  void AddCorner(FT_Angle nAngle, FT_Vector const& line);
  void AddInnerCorner(FT_Angle nAngle, FT_Vector const& line);
  void AddRound(FT_Angle nStart, FT_Angle nTurn);
  /// At the start of a curve, or between its parts if they bend too much: nLimit is how much that is.
  void JoinCurve(bool& bFirst, FT_Vector const& start, FT_Angle nAngle, FT_Angle nLimit);

  void AddPoint(FT_Vector const& point, char nTag);
  void AddLine(FT_Vector const& point, bool bMovable);

  QXTrigMemo m_Trig;
  std::vector<FT_Vector> m_arrPoints;
  std::vector<char> m_arrTags;
  std::vector<std::size_t> m_arrEnds;

  bool m_bSecondBorder = false;
  FT_Angle m_nSide = 0;      ///< from a segment's direction to the border
  std::size_t m_nStart = 0;  ///< of the contour's border
  bool m_bMovable = false;   ///< whether the last point is the end of a line, and may become that of a corner
  bool m_bFirst = false;     ///< no segment yet
  FT_Vector m_Center{};
  FT_Angle m_nAngleIn = 0;
  FT_Vector m_LineIn{};  ///< the last segment if it was a line, else zero
  FT_Vector m_ContourStart{};
  FT_Angle m_nStartAngle = 0;
  FT_Vector m_StartLine{};
};

}  // namespace QXC::detail
