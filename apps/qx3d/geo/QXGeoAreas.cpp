#include <apps/qx3d/geo/QXGeoAreas.h>

#include <algorithm>
#include <cmath>

namespace QXApp {

namespace {

using QXC::QXVector3d;
using Ring = std::vector<QXVector3d>;

/// Tries for a point: an area that fills a twentieth of its box is missed once in 160 times. A street or a river that
/// goes obliquely through its box is missed mostly, and takes a place on the level line of one more try.
constexpr int MaxTries = 100;

/// Twice the area, counter-clockwise above 0. Relative to a corner: squares of map coordinates have no digits left.
double GetSignedArea(Ring const& ring) {
  double dSum = 0.0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
    QXVector3d const a = ring[i] - ring[0];
    QXVector3d const b = ring[i + 1] - ring[0];
    dSum += a.x * b.y - a.y * b.x;
  }
  return dSum;
}

struct Box {
  explicit Box(Ring const& ring) : m_vecMin(ring[0]), m_vecMax(ring[0]) {
    for (QXVector3d const& vec : ring) {
      m_vecMin = QXVector3d(std::min(m_vecMin.x, vec.x), std::min(m_vecMin.y, vec.y), 0.0);
      m_vecMax = QXVector3d(std::max(m_vecMax.x, vec.x), std::max(m_vecMax.y, vec.y), 0.0);
    }
  }
  QXVector3d m_vecMin;
  QXVector3d m_vecMax;
};

bool Crosses(QXVector3d const& a, QXVector3d const& b, double dX, double dY) {
  return (a.y > dY) != (b.y > dY) && dX - a.x < (b.x - a.x) * ((dY - a.y) / (b.y - a.y));
}

std::size_t CountCorners(QXGeoFootprint const& area) {
  std::size_t nCount = 0;
  for (Ring const& ring : area.m_vecRings) nCount += ring.size();
  return nCount;
}

/// Where the level line at dY goes into the area and out of it, in turn.
void FindCrossings(QXGeoFootprint const& area, double dY, std::vector<double>& vecX) {
  vecX.clear();
  for (Ring const& ring : area.m_vecRings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      QXVector3d const& a = ring[i];
      QXVector3d const& b = ring[i == 0 ? ring.size() - 1 : i - 1];
      if ((a.y > dY) != (b.y > dY)) vecX.push_back(a.x + (b.x - a.x) * ((dY - a.y) / (b.y - a.y)));
    }
  }
  std::sort(vecX.begin(), vecX.end());
}

/// A point of what lies inside on a level line, at a part from 0 to 1 of its length. False if nothing does.
bool FindOnLine(std::vector<double> const& vecX, double dPart, double& dX) {
  double dLength = 0.0;
  for (std::size_t i = 0; i + 1 < vecX.size(); i += 2) dLength += vecX[i + 1] - vecX[i];
  double dRest = dPart * dLength;
  for (std::size_t i = 0; i + 1 < vecX.size(); i += 2) {
    double const dSpan = vecX[i + 1] - vecX[i];
    dX = std::min(vecX[i] + dRest, vecX[i + 1]);
    if (dRest <= dSpan) return true;
    dRest -= dSpan;
  }
  return vecX.size() > 1;
}

}  // namespace

double QXRandom::Take() {
  m_nState += 0x9E3779B97F4A7C15ULL;
  std::uint64_t n = m_nState;
  n = (n ^ (n >> 30)) * 0xBF58476D1CE4E5B9ULL;
  n = (n ^ (n >> 27)) * 0x94D049BB133111EBULL;
  n ^= n >> 31;
  return static_cast<double>(n >> 11) * 0x1p-53;
}

double GetArea(QXGeoFootprint const& area) {
  double dArea = 0.0;
  for (std::size_t i = 0; i < area.m_vecRings.size(); ++i) {
    double const dRing = 0.5 * std::abs(GetSignedArea(area.m_vecRings[i]));
    dArea += i == 0 ? dRing : -dRing;
  }
  return std::max(dArea, 0.0);
}

QXVector3d GetMiddle(QXGeoFootprint const& area) {
  Ring const& ring = area.m_vecRings[0];
  double const dArea = GetSignedArea(ring);
  double dSumX = 0.0;
  double dSumY = 0.0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
    QXVector3d const a = ring[i] - ring[0];
    QXVector3d const b = ring[i + 1] - ring[0];
    double const dTriangle = a.x * b.y - a.y * b.x;
    dSumX += (a.x + b.x) * dTriangle;
    dSumY += (a.y + b.y) * dTriangle;
  }
  QXVector3d vecMiddle = ring[0] + QXVector3d(dSumX / (3.0 * dArea), dSumY / (3.0 * dArea), 0.0);
  Box const box(ring);
  bool const bGood = vecMiddle.x >= box.m_vecMin.x && vecMiddle.x <= box.m_vecMax.x && vecMiddle.y >= box.m_vecMin.y &&
                     vecMiddle.y <= box.m_vecMax.y;
  if (!bGood)
    vecMiddle = QXVector3d(0.5 * (box.m_vecMin.x + box.m_vecMax.x), 0.5 * (box.m_vecMin.y + box.m_vecMax.y), 0.0);
  return QXVector3d(vecMiddle.x, vecMiddle.y, ring[0].z);
}

bool IsInside(QXGeoFootprint const& area, double dX, double dY) {
  bool bInside = false;
  for (Ring const& ring : area.m_vecRings)
    for (std::size_t i = 0; i < ring.size(); ++i)
      if (Crosses(ring[i], ring[i == 0 ? ring.size() - 1 : i - 1], dX, dY)) bInside = !bInside;
  return bInside;
}

void AppendPoints(QXGeoFootprint const& area, std::size_t nCount, QXRandom& random, std::size_t& nCorners,
    std::vector<QXVector3d>& vecPoints) {
  Box const box(area.m_vecRings[0]);
  QXVector3d const vecSize = box.m_vecMax - box.m_vecMin;
  std::size_t const nCost = CountCorners(area);
  std::vector<double> vecX;
  for (std::size_t i = 0; i < nCount; ++i) {
    bool bFound = false;
    for (int nTry = 0; nTry <= MaxTries && !bFound; ++nTry) {
      if (nCorners < nCost) {
        nCorners = 0;
        return;
      }
      nCorners -= nCost;
      double dX = box.m_vecMin.x + random.Take() * vecSize.x;
      double const dY = box.m_vecMin.y + random.Take() * vecSize.y;
      bFound = IsInside(area, dX, dY);
      if (!bFound && nTry == MaxTries) {
        FindCrossings(area, dY, vecX);
        bFound = FindOnLine(vecX, random.Take(), dX);
      }
      if (bFound) vecPoints.emplace_back(dX, dY, area.m_vecRings[0][0].z);
    }
  }
}

}  // namespace QXApp
