#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace QXC {

namespace {

struct Rows {
  double v[4][4];
};

constexpr QXMatrix4d MakeZero() {
  QXMatrix4d matrix;
  for (int nIndex = 0; nIndex < 4; ++nIndex) matrix[nIndex][nIndex] = 0.0;
  return matrix;
}

bool AllFinite(double const values[16]) {
  return std::all_of(values, values + 16, [](double dValue) { return std::isfinite(dValue); });
}

/// Scales each row, then each column, by a power of two so that its largest value lies in 1..2.
/// @return  false if a row or a column holds zeros only
bool Equilibrate(Rows& rows) {
  for (int nPass = 0; nPass < 2; ++nPass) {
    for (int nLine = 0; nLine < 4; ++nLine) {
      auto const at = [&](int nIndex) -> double& { return nPass == 0 ? rows.v[nLine][nIndex] : rows.v[nIndex][nLine]; };
      double dLargest = 0.0;
      for (int nIndex = 0; nIndex < 4; ++nIndex) dLargest = std::max(dLargest, std::fabs(at(nIndex)));
      if (dLargest == 0.0) return false;
      int const nExponent = -std::ilogb(dLargest);
      for (int nIndex = 0; nIndex < 4; ++nIndex) at(nIndex) = std::scalbn(at(nIndex), nExponent);
    }
  }
  return true;
}

/// The determinant from the six minors of the upper two rows and those of the lower two.
double Determinant(Rows const& rows) {
  static constexpr int kPairs[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
  static constexpr double kSigns[6] = {1.0, -1.0, 1.0, 1.0, -1.0, 1.0};
  auto const minor = [&](int nRow, int const* pColumns) {
    return rows.v[nRow][pColumns[0]] * rows.v[nRow + 1][pColumns[1]] -
           rows.v[nRow][pColumns[1]] * rows.v[nRow + 1][pColumns[0]];
  };
  double dSum = 0.0;
  for (int nPair = 0; nPair < 6; ++nPair) dSum += kSigns[nPair] * minor(0, kPairs[nPair]) * minor(2, kPairs[5 - nPair]);
  return dSum;
}

/// Elimination divides and so rounds: a singular matrix of small integers can leave a tiny pivot and an inverse full of
/// noise. Minors of small integers are exact. A threshold on the pivot instead would refuse sound matrices of far
/// coordinates, and without the scaling the determinant of small or large scales would leave the range of doubles.
bool IsSingular(Rows rows) {
  return !Equilibrate(rows) || Determinant(rows) == 0.0;
}

int FindPivotRow(Rows const& rows, int nColumn) {
  int nPivot = nColumn;
  for (int nRow = nColumn + 1; nRow < 4; ++nRow) {
    if (std::fabs(rows.v[nRow][nColumn]) > std::fabs(rows.v[nPivot][nColumn])) nPivot = nRow;
  }
  return nPivot;
}

/// Gauss-Jordan: turns `left` into the identity and does the same steps to `right`.
bool Eliminate(Rows& left, Rows& right) {
  for (int nColumn = 0; nColumn < 4; ++nColumn) {
    int const nPivot = FindPivotRow(left, nColumn);
    if (left.v[nPivot][nColumn] == 0.0) return false;
    std::swap(left.v[nPivot], left.v[nColumn]);
    std::swap(right.v[nPivot], right.v[nColumn]);
    double const dPivot = left.v[nColumn][nColumn];
    for (int nIndex = 0; nIndex < 4; ++nIndex) {
      left.v[nColumn][nIndex] /= dPivot;
      right.v[nColumn][nIndex] /= dPivot;
    }
    for (int nRow = 0; nRow < 4; ++nRow) {
      if (nRow == nColumn) continue;
      double const dFactor = left.v[nRow][nColumn];
      for (int nIndex = 0; nIndex < 4; ++nIndex) {
        left.v[nRow][nIndex] -= dFactor * left.v[nColumn][nIndex];
        right.v[nRow][nIndex] -= dFactor * right.v[nColumn][nIndex];
      }
    }
  }
  return true;
}

}  // namespace

// Constant-initialised: statics of other files copy them before any constructor of this file could have run.
constexpr QXMatrix4d QXMatrix4d::ZERO = MakeZero();
constexpr QXMatrix4d QXMatrix4d::IDENTITY{};

QXMatrix4d& QXMatrix4d::operator=(QXMatrix3d const& rotation) {
  for (int nRow = 0; nRow < 3; ++nRow) std::copy_n(rotation[nRow], 3, m[nRow]);
  return *this;
}

bool QXMatrix4d::operator==(QXMatrix4d const& other) const {
  return std::equal(&m[0][0], &m[0][0] + 16, &other.m[0][0]);
}

QXMatrix4d QXMatrix4d::operator*(QXMatrix4d const& other) const {
  QXMatrix4d result;
  for (int nRow = 0; nRow < 4; ++nRow) MultMatrixVecd(&other.m[0][0], m[nRow], result.m[nRow]);
  return result;
}

QXMatrix4d QXMatrix4d::Invert() const {
  QXMatrix4d result;
  return InvertMatrixd(&m[0][0], &result.m[0][0]) ? result : ZERO;
}

void QXMatrix4d::SetTrans(QXVector3d const& translation) {
  m[3][0] = translation.x;
  m[3][1] = translation.y;
  m[3][2] = translation.z;
}

void QXMatrix4d::MultMatrixVecd(double const matrix[16], double const in[4], double out[4]) {
  double result[4];
  for (int nColumn = 0; nColumn < 4; ++nColumn) {
    result[nColumn] = in[0] * matrix[nColumn] + in[1] * matrix[4 + nColumn] + in[2] * matrix[8 + nColumn] +
                      in[3] * matrix[12 + nColumn];
  }
  std::copy_n(result, 4, out);
}

void QXMatrix4d::MultMatricesd(double const a[16], double const b[16], double out[16]) {
  double result[16];
  for (int nRow = 0; nRow < 4; ++nRow) MultMatrixVecd(b, a + 4 * nRow, result + 4 * nRow);
  std::memcpy(out, result, sizeof result);
}

int QXMatrix4d::InvertMatrixd(double const in[16], double out[16]) {
  if (!AllFinite(in)) return 0;
  Rows left;
  std::memcpy(left.v, in, sizeof left.v);
  if (IsSingular(left)) return 0;
  Rows right = {{{1.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}}};
  if (!Eliminate(left, right) || !AllFinite(&right.v[0][0])) return 0;
  std::memcpy(out, right.v, sizeof right.v);
  return 1;
}

}  // namespace QXC
