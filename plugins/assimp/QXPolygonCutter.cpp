#include <plugins/assimp/QXPolygonCutter.h>

#include <cmath>
#include <cstddef>

namespace QXAssimp {

namespace {

struct Point {
  double x, y;
};

/// Twice the area of a triangle, positive when it runs counter-clockwise.
double Area(Point const& a, Point const& b, Point const& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// The polygon on the axis plane where it is largest, turned so that it runs counter-clockwise. Newell's sums give the
/// areas on all three planes, for polygons that are not level as well.
std::vector<Point> Flatten(float const* pPositions, unsigned int const* pIndices, unsigned int nCount) {
  double dNormal[3] = {0.0, 0.0, 0.0};
  for (unsigned int i = 0; i < nCount; ++i) {
    float const* p = pPositions + 3 * std::size_t{pIndices[i]};
    float const* q = pPositions + 3 * std::size_t{pIndices[(i + 1) % nCount]};
    for (int nAxis = 0; nAxis < 3; ++nAxis) {
      int const nU = (nAxis + 1) % 3;
      int const nV = (nAxis + 2) % 3;
      dNormal[nAxis] += (static_cast<double>(p[nU]) - static_cast<double>(q[nU])) *
                        (static_cast<double>(p[nV]) + static_cast<double>(q[nV]));
    }
  }
  int nLargest = 0;
  for (int nAxis = 1; nAxis < 3; ++nAxis)
    if (std::fabs(dNormal[nAxis]) > std::fabs(dNormal[nLargest])) nLargest = nAxis;
  double const dSign = dNormal[nLargest] < 0.0 ? -1.0 : 1.0;
  std::vector<Point> vecPoints;
  for (unsigned int i = 0; i < nCount; ++i) {
    float const* p = pPositions + 3 * std::size_t{pIndices[i]};
    vecPoints.push_back(
        {dSign * static_cast<double>(p[(nLargest + 1) % 3]), static_cast<double>(p[(nLargest + 2) % 3])});
  }
  return vecPoints;
}

bool IsConvex(std::vector<Point> const& vecPoints) {
  std::size_t const nCount = vecPoints.size();
  for (std::size_t i = 0; i < nCount; ++i)
    if (Area(vecPoints[i], vecPoints[(i + 1) % nCount], vecPoints[(i + 2) % nCount]) < 0.0) return false;
  return true;
}

/// Whether the triangle at a corner can be cut off: it turns the right way and holds no other corner.
bool IsEar(std::vector<Point> const& vecPoints, std::vector<unsigned int> const& vecLeft, std::size_t nCorner) {
  std::size_t const nCount = vecLeft.size();
  unsigned int const nBefore = vecLeft[(nCorner + nCount - 1) % nCount];
  unsigned int const nHere = vecLeft[nCorner];
  unsigned int const nAfter = vecLeft[(nCorner + 1) % nCount];
  Point const& a = vecPoints[nBefore];
  Point const& b = vecPoints[nHere];
  Point const& c = vecPoints[nAfter];
  if (!(Area(a, b, c) > 0.0)) return false;
  for (unsigned int nOther : vecLeft) {
    if (nOther == nBefore || nOther == nHere || nOther == nAfter) continue;
    Point const& p = vecPoints[nOther];
    if (Area(a, b, p) > 0.0 && Area(b, c, p) > 0.0 && Area(c, a, p) > 0.0) return false;
  }
  return true;
}

void AppendFan(unsigned int const* pIndices, unsigned int nCount, std::vector<unsigned int>& vecCorners) {
  for (unsigned int i = 1; i + 1 < nCount; ++i)
    vecCorners.insert(vecCorners.end(), {pIndices[0], pIndices[i], pIndices[i + 1]});
}

}  // namespace

void CutPolygon(
    float const* pPositions, unsigned int const* pIndices, unsigned int nCount, std::vector<unsigned int>& vecCorners) {
  constexpr unsigned int MostForEars = 1000;
  if (nCount < 3) return;
  if (nCount == 3 || nCount > MostForEars) return AppendFan(pIndices, nCount, vecCorners);
  std::vector<Point> const vecPoints = Flatten(pPositions, pIndices, nCount);
  if (IsConvex(vecPoints)) return AppendFan(pIndices, nCount, vecCorners);

  std::vector<unsigned int> vecLeft(nCount);
  for (unsigned int i = 0; i < nCount; ++i) vecLeft[i] = i;
  while (vecLeft.size() > 3) {
    std::size_t nEar = 0;
    while (nEar < vecLeft.size() && !IsEar(vecPoints, vecLeft, nEar)) ++nEar;
    // A polygon that crosses itself may have no ear left; any corner ends it as well.
    if (nEar == vecLeft.size()) nEar = 1;
    std::size_t const nSize = vecLeft.size();
    for (std::size_t nStep : {nSize - 1, std::size_t{0}, std::size_t{1}})
      vecCorners.push_back(pIndices[vecLeft[(nEar + nStep) % nSize]]);
    vecLeft.erase(vecLeft.begin() + static_cast<std::ptrdiff_t>(nEar));
  }
  for (unsigned int nCorner : vecLeft) vecCorners.push_back(pIndices[nCorner]);
}

}  // namespace QXAssimp
