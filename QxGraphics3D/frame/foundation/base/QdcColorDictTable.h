/// @file
/// Colours along a value axis.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <cstddef>
#include <vector>

namespace QDC {

/// Colours by value, in rising order of the values: heights, temperatures or classes to what they are drawn in.
/// Colours are words of QDCRGBA. Threads: like a value of the standard library.
class QXGRAPHICS3D_API QdcColorDictTable {
public:
  /// Enters an item at its place; of equal values the later one stands behind. A value that is no number has no place
  /// and is ignored; infinities are ends like others.
  void Add(double dValue, unsigned int nColor);

  int GetCount() const { return static_cast<int>(m_arrItems.size()); }
  /// Item nIndex in rising order, 0 to GetCount() - 1. Outside that, both arguments keep what they hold.
  void GetItem(int nIndex, double& dValue, unsigned int& nColor) const;

  /// The colour at a value: for bInterpolate 1 each of the four channels on the straight line between the neighbours,
  /// rounded to the nearest (halves up); for 0 that of the last item at or below the value. Below the first and
  /// behind the last item their own colours; that of the first for a value that is no number; 0 from an empty table.
  /// Beside an infinite neighbour the other one's colour holds. Cost: logarithmic.
  unsigned int GetColor(double dValue, unsigned char bInterpolate) const;

private:
  struct Item {
    double m_dValue;
    unsigned int m_nColor;
  };
  std::size_t CountUpTo(double dValue) const;

  std::vector<Item> m_arrItems;
};

}  // namespace QDC
