#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "QXStaticGeometryParts.h"

// A city on the globe, merged against a base frame inside it: how far each vertex lies from where the numbers of its
// mesh and of the two matrices put it. The figures are those of doc/staticgeometry.md.
namespace QXC {
namespace {

constexpr double EarthRadius = 6378137.0;
constexpr unsigned int VerticesPerBuilding = 64;
constexpr int BuildingsPerRing = 48;

using Exact = std::array<long double, 3>;

struct Place {
  char const* m_szName;
  double m_dLatitude;
  double m_dLongitude;
};

constexpr Place Places[] = {{"equator", 0.0, 0.0}, {"Braunschweig", 52.27, 10.52}, {"Wellington", -41.29, 174.78},
    {"Quito", -0.18, -78.47}, {"date line", 65.0, 180.0}, {"near the pole", 89.99, 33.0}};

// Rows east, north, up and origin: maps metres around a place on the globe into Earth-centred metres.
QXMatrix4d FrameAt(double dLatitude, double dLongitude, double dHeight) {
  double const dLat = dLatitude * std::numbers::pi / 180.0;
  double const dLon = dLongitude * std::numbers::pi / 180.0;
  double const rows[3][3] = {{-std::sin(dLon), std::cos(dLon), 0.0},
      {-std::sin(dLat) * std::cos(dLon), -std::sin(dLat) * std::sin(dLon), std::cos(dLat)},
      {std::cos(dLat) * std::cos(dLon), std::cos(dLat) * std::sin(dLon), std::sin(dLat)}};
  QXMatrix4d frame;
  for (int row = 0; row < 3; ++row) std::copy(rows[row], rows[row] + 3, frame.m[row]);
  for (int axis = 0; axis < 3; ++axis) frame.m[3][axis] = rows[2][axis] * (EarthRadius + dHeight);
  return frame;
}

// The point whose coordinates in the frame are given.
Exact ToWorld(Exact const& point, QXMatrix4d const& frame) {
  Exact world{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    world[axis] = frame.m[3][axis];
    for (std::size_t row = 0; row < 3; ++row) world[axis] += point[row] * static_cast<long double>(frame.m[row][axis]);
  }
  return world;
}

// Solves point * frame = world for the point, by Cramer's rule on the 3x3 part.
Exact FromWorld(Exact const& world, QXMatrix4d const& frame) {
  auto const at = [&](int nRow, int nColumn) { return static_cast<long double>(frame.m[nRow][nColumn]); };
  auto const cofactor = [&](int nRow, int nColumn) {
    int const r1 = (nRow + 1) % 3, r2 = (nRow + 2) % 3, c1 = (nColumn + 1) % 3, c2 = (nColumn + 2) % 3;
    return at(r1, c1) * at(r2, c2) - at(r1, c2) * at(r2, c1);
  };
  long double const determinant = at(0, 0) * cofactor(0, 0) + at(0, 1) * cofactor(0, 1) + at(0, 2) * cofactor(0, 2);
  Exact point{};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      auto const offset = world[static_cast<std::size_t>(column)] - at(3, column);
      point[static_cast<std::size_t>(row)] += offset * cofactor(row, column) / determinant;
    }
  }
  return point;
}

// Buildings whose vertices lie up to dDistance metres from the base along each axis, and some of them that far.
struct Ring {
  QXBatchingHost m_Host;
  std::vector<QXMatrix4d> m_vecFrames;
  std::vector<QXVertexDataPackage*> m_vecMeshes;
};

void FillRing(
    Ring& ring, QXStaticGeometry& geometry, QXMatrix4d const& matBase, double dDistance, std::mt19937& random) {
  std::uniform_real_distribution<double> inside(-30.0, 30.0);
  for (int building = 0; building < BuildingsPerRing; ++building) {
    double const dAngle = 2.0 * std::numbers::pi * building / BuildingsPerRing;
    double const dRadius = dDistance - 60.0;
    Exact const place{dRadius * std::cos(dAngle), dRadius * std::sin(dAngle), -dRadius * dRadius / EarthRadius / 2.0};
    Exact const origin = ToWorld(place, matBase);
    // Each building has a frame of its own, which is turned against the base.
    QXMatrix4d frame = matBase;
    double const dTurn = building * 0.37;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      frame.m[0][axis] = matBase.m[0][axis] * std::cos(dTurn) + matBase.m[1][axis] * std::sin(dTurn);
      frame.m[1][axis] = matBase.m[1][axis] * std::cos(dTurn) - matBase.m[0][axis] * std::sin(dTurn);
      frame.m[3][axis] = static_cast<double>(origin[axis]);
    }
    QXVertexDataPackage& mesh = ring.m_Host.MakeCounted(0);
    mesh.SetVertexNum(VerticesPerBuilding, 0);
    for (unsigned int number = 0; number < 3 * VerticesPerBuilding; ++number)
      mesh.m_pVertices[number] = static_cast<float>(inside(random));
    ring.m_Host.Add(geometry, mesh, {}, nullptr, 0, frame);
    ring.m_vecFrames.push_back(frame);
    ring.m_vecMeshes.push_back(&mesh);
  }
}

// Greatest distance of a merged coordinate, and of a coordinate narrowed to float without a base, from the exact one.
struct Errors {
  double m_dMerged = 0.0;
  double m_dWithoutBase = 0.0;
  double m_dReach = 0.0;
};

Errors Measure(Ring const& ring, QXStaticGeometry const& geometry, QXMatrix4d const& matBase) {
  Errors errors;
  float const* pMerged = geometry.m_vecBuckets16.at(0)->m_pVertexPackage->m_pVertices;
  for (std::size_t mesh = 0; mesh < ring.m_vecMeshes.size(); ++mesh) {
    float const* pVertex = ring.m_vecMeshes[mesh]->m_pVertices;
    for (unsigned int vertex = 0; vertex < VerticesPerBuilding; ++vertex, pVertex += 3, pMerged += 3) {
      Exact const world = ToWorld({pVertex[0], pVertex[1], pVertex[2]}, ring.m_vecFrames[mesh]);
      Exact const expected = FromWorld(world, matBase);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        auto const error = [](long double value, float fStored) {
          return static_cast<double>(std::fabs(value - static_cast<long double>(fStored)));
        };
        errors.m_dMerged = std::max(errors.m_dMerged, error(expected[axis], pMerged[axis]));
        errors.m_dWithoutBase = std::max(errors.m_dWithoutBase, error(world[axis], static_cast<float>(world[axis])));
        errors.m_dReach = std::max(errors.m_dReach, static_cast<double>(std::fabs(expected[axis])));
      }
    }
  }
  return errors;
}

TEST(QXStaticGeometryPrecision, VerticesKeepHalfAMillimetreUpToSixteenKilometres) {
  constexpr unsigned int Seed = 6378137;
  std::mt19937 random(Seed);
  for (double dDistance : {125.0, 250.0, 500.0, 1000.0, 2000.0, 4000.0, 8000.0, 16000.0}) {
    // Half of the last place of a float of that size. All arithmetic in doubles adds some nanometres.
    double const dBound = std::ldexp(0.5, std::ilogb(dDistance) - 23) + 2e-8;
    Errors worst;
    for (Place const& place : Places) {
      SCOPED_TRACE(std::string(place.m_szName) + ", " + std::to_string(dDistance) + " m");
      QXMatrix4d const matBase = FrameAt(place.m_dLatitude, place.m_dLongitude, 75.0);
      QXStaticGeometry geometry;
      Ring ring;
      FillRing(ring, geometry, matBase, dDistance, random);
      geometry.AssignStaticGeometry(matBase, 0);
      Errors const errors = Measure(ring, geometry, matBase);
      EXPECT_LE(errors.m_dReach, dDistance);
      EXPECT_GT(errors.m_dReach, dDistance - 120.0);
      EXPECT_LE(errors.m_dMerged, dBound);
      EXPECT_LE(errors.m_dMerged, 0.0005);
      EXPECT_GT(errors.m_dWithoutBase, 0.1) << "Earth-centred floats are no use";
      worst.m_dMerged = std::max(worst.m_dMerged, errors.m_dMerged);
      worst.m_dWithoutBase = std::max(worst.m_dWithoutBase, errors.m_dWithoutBase);
    }
    std::cout << std::fixed << std::setprecision(0) << std::setw(6) << dDistance << " m: " << std::setprecision(4)
              << 1000.0 * worst.m_dMerged << " mm, without a base " << std::setprecision(1)
              << 1000.0 * worst.m_dWithoutBase << " mm\n";
  }
}

// The double part alone: what is left when the last narrowing is taken away, from vertices that no float rounds.
TEST(QXStaticGeometryPrecision, ArithmeticAddsNanometres) {
  for (Place const& place : Places) {
    SCOPED_TRACE(place.m_szName);
    QXMatrix4d const matBase = FrameAt(place.m_dLatitude, place.m_dLongitude, 75.0);
    QXStaticGeometry geometry;
    QXBatchingHost host;
    QXVertexDataPackage& mesh = host.MakeCounted(0);
    mesh.SetVertexNum(1, 0);
    host.Add(geometry, mesh, {}, nullptr, 0, matBase);
    geometry.AssignStaticGeometry(matBase, 0);
    float const* pMerged = geometry.m_vecBuckets16.at(0)->m_pVertexPackage->m_pVertices;
    for (int axis = 0; axis < 3; ++axis) EXPECT_NEAR(pMerged[axis], 0.0, 2e-8) << "the base's own origin";
  }
}

}  // namespace
}  // namespace QXC
