/// @file
/// 4x4 matrix for transformations of points.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

class QXMatrix3d;
class QXVector3d;

/// Sixteen doubles in rows, multiplied from the left by row vectors: v' = v * M, translation in row 3, and
/// A * B applies A first. The flat arrays of the static operations hold the rows one after the other.
class QXGRAPHICS3D_API QXMatrix4d {
public:
  double m[4][4];

  static const QXMatrix4d ZERO;
  static const QXMatrix4d IDENTITY;

  /// The identity.
  constexpr QXMatrix4d() : m{{1.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}} {}
  constexpr QXMatrix4d(QXMatrix4d const& other) = default;
  constexpr QXMatrix4d& operator=(QXMatrix4d const& other) = default;
  // With a body, not defaulted: g++ 12 refuses a defaulted one in the constant initialisation of ZERO.
  constexpr virtual ~QXMatrix4d() {}

  /// Takes the 3x3 part; row 3 and column 3 keep their values.
  QXMatrix4d& operator=(QXMatrix3d const& rotation);

  /// Row nRow (0 to 3, not checked) as four doubles.
  constexpr double* operator[](int nRow) { return m[nRow]; }
  /// @copydoc operator[](int)
  constexpr double const* operator[](int nRow) const { return m[nRow]; }

  /// Exact comparison of all sixteen values.
  bool operator==(QXMatrix4d const& other) const;
  /// The transformation that applies this matrix first and then the other.
  QXMatrix4d operator*(QXMatrix4d const& other) const;
  /// The inverse; ZERO for a singular matrix.
  QXMatrix4d Invert() const;
  /// Stores the translation, that is the first three values of row 3.
  void SetTrans(QXVector3d const& translation);

  /// The row vector times the matrix. `in` and `out` may be the same array.
  static void MultMatrixVecd(double const m[16], double const in[4], double out[4]);
  /// out = a * b. `out` may be `a` or `b`.
  static void MultMatricesd(double const a[16], double const b[16], double out[16]);
  /// Inverts by elimination with row pivoting. `in` and `out` may be the same array.
  /// @return  1; 0 for a singular matrix, one with a value that is not finite, or one whose inverse leaves the
  ///          range of doubles, and `out` is then left alone
  static int InvertMatrixd(double const in[16], double out[16]);
};

}  // namespace QXC
