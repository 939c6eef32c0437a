/// @file
/// The points of one ribbon.
#pragma once

#include <cstddef>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// A point as it was added, less what it has lost since.
struct QXOgreRibbonPoint {
  QXVector3d m_vecPosition;
  QXColorValue3D m_Color;
  double m_dWidth = 0.0;
};

/// The last points of one trail, with what new ones get and lose. Memory grows with the most points that it ever had.
class QXOgreRibbon final {
public:
  /// Adds to the head. @param nMaxPoints  the oldest goes where there would be more; the same number until Limit
  void Add(QXVector3d const& vecPosition, std::size_t nMaxPoints);
  /// Drops the oldest points beyond a new number.
  void Limit(std::size_t nMaxPoints);
  void Clear();
  std::size_t GetCount() const { return m_arrPoints.size(); }
  /// Counted from the newest.
  QXOgreRibbonPoint const& GetPoint(std::size_t nAge) const;
  /// Takes from every point what it loses in that time. Cost: linear.
  void Advance(double dSeconds);
  /// Appends the points of the head, as far as a length reaches along them; the last one lies where the length ends.
  /// Points on the same place come once, as the newest of them is.
  /// @param dLength  0: all
  void CollectHead(double dLength, std::vector<QXOgreRibbonPoint>& arrPoints) const;

  QXColorValue3D m_Color = {1.0, 1.0, 1.0, 1.0};
  QXColorValue3D m_ColorChange;
  double m_dWidth = 1.0;
  double m_dWidthChange = 0.0;

private:
  /// A ring once it is full: only then is the oldest not the first.
  std::vector<QXOgreRibbonPoint> m_arrPoints;
  std::size_t m_nOldest = 0;
};

}  // namespace QXC
