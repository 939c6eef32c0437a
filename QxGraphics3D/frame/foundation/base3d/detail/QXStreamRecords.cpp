#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>

#include <algorithm>
#include <limits>

namespace QXC::detail {

unsigned char LoadCount(QXStream& stream, int& nCount, unsigned int nLeastSize) {
  QXUInt64 const nPosition = stream.GetPosition();
  stream >> nCount;
  if (!stream.CanHold(nCount, nLeastSize)) stream.Fail(nPosition);
  return stream.IsGood();
}

int ToDataSize(QXInt64 nBytes) {
  return static_cast<int>(std::min<QXInt64>(nBytes, std::numeric_limits<int>::max()));
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
