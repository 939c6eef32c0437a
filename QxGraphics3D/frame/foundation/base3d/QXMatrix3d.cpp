#include <QxGraphics3D/frame/foundation/base3d/QXMatrix3d.h>

namespace QXC {

void QXMatrix3d::FromAxes(QXVector3d const& xAxis, QXVector3d const& yAxis, QXVector3d const& zAxis) {
  QXVector3d const* const axes[3] = {&xAxis, &yAxis, &zAxis};
  for (int nRow = 0; nRow < 3; ++nRow) {
    m[nRow][0] = axes[nRow]->x;
    m[nRow][1] = axes[nRow]->y;
    m[nRow][2] = axes[nRow]->z;
  }
}

QXMatrix3d QXMatrix3d::Transpose() const {
  QXMatrix3d result;
  for (int nRow = 0; nRow < 3; ++nRow) {
    for (int nColumn = 0; nColumn < 3; ++nColumn) result.m[nColumn][nRow] = m[nRow][nColumn];
  }
  return result;
}

QXVector3d QXMatrix3d::operator*(QXVector3d const& vector) const {
  auto const column = [&](int nColumn) {
    return vector.x * m[0][nColumn] + vector.y * m[1][nColumn] + vector.z * m[2][nColumn];
  };
  return {column(0), column(1), column(2)};
}

}  // namespace QXC
