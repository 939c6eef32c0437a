/// @file
/// 3x3 matrix for rotations.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

/// Nine doubles in rows, multiplied from the left by row vectors; the identity when default-constructed.
class QXGRAPHICS3D_API QXMatrix3d {
public:
  double m[3][3];

  constexpr QXMatrix3d() : m{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}} {}

  /// Row nRow (0 to 2, not checked) as three doubles.
  constexpr double* operator[](int nRow) { return m[nRow]; }
  /// @copydoc operator[](int)
  constexpr double const* operator[](int nRow) const { return m[nRow]; }

  /// Puts the three axes into the rows, so that the matrix maps coordinates along the axes to world coordinates.
  void FromAxes(QXVector3d const& xAxis, QXVector3d const& yAxis, QXVector3d const& zAxis);
  QXMatrix3d Transpose() const;
  /// The row vector times this matrix: result[j] = sum of vector[i] * m[i][j].
  QXVector3d operator*(QXVector3d const& vector) const;
};

}  // namespace QXC
