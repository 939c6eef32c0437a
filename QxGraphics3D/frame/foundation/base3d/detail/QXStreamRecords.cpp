#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>

namespace QXC::detail {

unsigned char LoadCount(QXStream& stream, int& nCount, unsigned int nLeastSize) {
  stream >> nCount;
  if (stream.IsGood() && !stream.CanHold(nCount, nLeastSize)) stream.Fail();
  return stream.IsGood();
}

void LoadMatrix(QXStream& stream, QXMatrix4d& matrix) {
  for (auto& row : matrix.m)
    for (double& dValue : row) stream >> dValue;
}

void SaveMatrix(QXStream& stream, QXMatrix4d const& matrix) {
  for (auto const& row : matrix.m)
    for (double const dValue : row) stream << dValue;
}

void LoadColour(QXStream& stream, QXColorValue3D& colour) {
  stream >> colour.r >> colour.g >> colour.b >> colour.a;
}

void SaveColour(QXStream& stream, QXColorValue3D const& colour) {
  stream << colour.r << colour.g << colour.b << colour.a;
}

}  // namespace QXC::detail
