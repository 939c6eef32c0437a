#include <apps/qx3d/geo/QXFootprintModel.h>
#include <apps/qx3d/geo/QXRoofCutter.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <random>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::HasSubstr;

std::vector<QXVector3d> Box(double dMin, double dMax, double z = 0.0) {
  return {QXVector3d(dMin, dMin, z), QXVector3d(dMax, dMin, z), QXVector3d(dMax, dMax, z), QXVector3d(dMin, dMax, z)};
}

QXGeoFootprint Square(double dEdge) {
  QXGeoFootprint footprint;
  footprint.m_vecRings = {Box(0.0, dEdge)};
  return footprint;
}

struct Triangle {
  QXVector3d m_vecCorners[3];
  QXVector3d m_vecNormal;
  QXVector3d Cross() const {
    return (m_vecCorners[1] - m_vecCorners[0]).CrossProduct(m_vecCorners[2] - m_vecCorners[0]);
  }
};

std::vector<Triangle> GetTriangles(QXC::ModelDataInfo const& model) {
  std::vector<Triangle> vecTriangles;
  for (int i = 0; i < model.GetNodeCount(); ++i) {
    QXC::QXModelNode const& node = *model.GetNode(i);
    QXC::QXModelMesh const& mesh = *model.GetMesh(node.m_nMesh);
    QXC::QXIndexPackage const& package = *mesh.m_arrIndexPackages[0];
    for (int j = 0; j < package.m_nIndexNum; ++j) {
      std::size_t const nVertex = package.m_nIndexType == 1 ? package.GetIndices32()[j] : package.GetIndices16()[j];
      auto const read = [nVertex](float const* p) {
        return QXVector3d(static_cast<double>(p[3 * nVertex]), static_cast<double>(p[3 * nVertex + 1]),
            static_cast<double>(p[3 * nVertex + 2]));
      };
      if (j % 3 == 0) vecTriangles.emplace_back();
      vecTriangles.back().m_vecCorners[j % 3] =
          read(mesh.m_pVertexPackage->m_pVertices).MultiplyMatrix(node.m_matWorld);
      vecTriangles.back().m_vecNormal = read(mesh.m_pVertexPackage->m_pNormals);
    }
  }
  return vecTriangles;
}

std::vector<Triangle> Build(
    std::vector<QXGeoFootprint> const& vecFootprints, QXVector3d const& vecShift = QXVector3d()) {
  std::string strWarning;
  auto const pModel = MakeFootprintModel(vecFootprints, vecShift, strWarning);
  EXPECT_EQ(strWarning, "");
  return pModel == nullptr ? std::vector<Triangle>() : GetTriangles(*pModel);
}

double RoofArea(std::vector<Triangle> const& vecTriangles) {
  double dArea = 0.0;
  for (Triangle const& triangle : vecTriangles)
    if (triangle.m_vecNormal.z > 0.5) dArea += 0.5 * triangle.Cross().z;
  return dArea;
}

/// Space inside a closed surface.
double Volume(std::vector<Triangle> const& vecTriangles) {
  double dVolume = 0.0;
  for (Triangle const& t : vecTriangles)
    dVolume += t.m_vecCorners[0].DotProduct(t.m_vecCorners[1].CrossProduct(t.m_vecCorners[2])) / 6.0;
  return dVolume;
}

TEST(QXBuildingHeight, TheFileGoesBeforeStoreysAndThoseBeforeTheArea) {
  QXGeoFootprint footprint = Square(10.0);
  footprint.m_dStoreys = 4.0;
  EXPECT_EQ(GetBuildingHeight(footprint), 12.0);
  footprint.m_dHeight = 7.25;
  EXPECT_EQ(GetBuildingHeight(footprint), 7.25);
}

TEST(QXBuildingHeight, TheAreaDecidesBetweenShedHouseAndBlock) {
  EXPECT_EQ(GetBuildingHeight(Square(6.3)), 3.0);
  EXPECT_EQ(GetBuildingHeight(Square(6.4)), 9.0);
  EXPECT_EQ(GetBuildingHeight(Square(19.9)), 9.0);
  EXPECT_EQ(GetBuildingHeight(Square(20.0)), 12.0);
}

TEST(QXBuildingHeight, CourtyardsAreNoArea) {
  QXGeoFootprint footprint = Square(20.0);
  footprint.m_vecRings.push_back(Box(5.0, 6.0));
  EXPECT_EQ(GetFootprintArea(footprint), 399.0);
  footprint.m_vecRings.push_back(Box(-50.0, 60.0));
  EXPECT_EQ(GetFootprintArea(footprint), 0.0);
}

TEST(QXFootprintModel, ABoxHasWallsThatLookOutwardsAndARoofThatLooksUp) {
  std::vector<Triangle> const vecTriangles = Build({Square(10.0)});
  ASSERT_EQ(vecTriangles.size(), 10u);
  EXPECT_DOUBLE_EQ(RoofArea(vecTriangles), 100.0);
  for (Triangle const& triangle : vecTriangles) {
    EXPECT_GT(triangle.Cross().DotProduct(triangle.m_vecNormal), 0.0);
    QXVector3d const vecOut = triangle.m_vecCorners[0] - QXVector3d(5.0, 5.0, 4.5);
    EXPECT_GT(vecOut.DotProduct(triangle.m_vecNormal), 0.0);
    EXPECT_DOUBLE_EQ(triangle.m_vecNormal.Length(), 1.0);
  }
}

TEST(QXFootprintModel, TheDirectionOfRingsDoesNotMatter) {
  QXGeoFootprint footprint = Square(30.0);
  footprint.m_vecRings.push_back(Box(10.0, 20.0));
  for (int nCase = 0; nCase < 4; ++nCase) {
    for (std::size_t i = 0; i < 2; ++i)
      if (((nCase >> i) & 1) != 0) std::reverse(footprint.m_vecRings[i].begin(), footprint.m_vecRings[i].end());
    std::vector<Triangle> const vecTriangles = Build({footprint});
    EXPECT_DOUBLE_EQ(RoofArea(vecTriangles), 800.0) << nCase;
    // The bottom lies at 0 and adds nothing to the sum, so that it may be missing.
    EXPECT_NEAR(Volume(vecTriangles), 800.0 * 12.0, 1e-6) << nCase;
  }
}

/// A zigzag of so many edges up and down, crossed by one level edge.
std::vector<std::vector<QXRoofCutter::Corner>> MakeCrossed(int nEdges) {
  std::vector<QXRoofCutter::Corner> vecRing;
  for (int i = 0; i <= nEdges; ++i) vecRing.push_back({static_cast<double>(i), i % 2 == 0 ? 1.0 : -1.0});
  vecRing.push_back({nEdges + 1.0, 0.0});
  vecRing.push_back({-1.0, 0.0});
  return {vecRing};
}

TEST(QXRoofCutter, AThousandCrossingsAreCutAndMoreAreNot) {
  QXRoofCutter cutter;
  EXPECT_TRUE(cutter.Cut(MakeCrossed(1000)));
  EXPECT_EQ(cutter.GetCrossingCount(), 1000u);
  EXPECT_FALSE(cutter.Cut(MakeCrossed(1001)));
  EXPECT_TRUE(cutter.GetTriangles().empty());
  EXPECT_EQ(cutter.GetCrossingCount(), 1000u) << "they are not even begun";
}

TEST(QXRoofCutter, EdgesThatLieOnEachOtherCountAsCrossing) {
  // Out and back from one corner, each time a little farther.
  std::vector<QXRoofCutter::Corner> vecRing;
  for (int i = 1; i < 40; ++i) {
    vecRing.push_back({0.0, 0.0});
    vecRing.push_back({0.3 * i, 0.1 * i});
  }
  vecRing.push_back({0.0, 5.0});
  QXRoofCutter cutter;
  EXPECT_FALSE(cutter.Cut({vecRing}));
  // Back and forth along one edge.
  vecRing.clear();
  for (int i = 0; i < 40; ++i) vecRing.push_back({i % 2 == 0 ? 0.0 : 4.0, 0.0});
  vecRing.push_back({0.0, 5.0});
  EXPECT_TRUE(cutter.Cut({vecRing})) << "741 pairs";
  for (int i = 0; i < 40; ++i) vecRing.insert(vecRing.begin(), {i % 2 == 0 ? 4.0 : 0.0, 0.0});
  EXPECT_FALSE(cutter.Cut({vecRing}));
}

TEST(QXFootprintModel, CornersAtRandomCostNoTime) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> place(0.0, 100.0);
  QXGeoFootprint footprint;
  footprint.m_vecRings.emplace_back();
  for (int i = 0; i < 2000; ++i) footprint.m_vecRings[0].emplace_back(place(random), place(random), 0.0);
  std::string strWarning;
  auto const begin = std::chrono::steady_clock::now();
  EXPECT_EQ(MakeFootprintModel(std::vector<QXGeoFootprint>(100, footprint), QXVector3d(), strWarning), nullptr);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
  EXPECT_THAT(strWarning, HasSubstr("100 footprints"));
}

TEST(QXFootprintModel, BuildingsStandOnTheirLowestCorner) {
  QXGeoFootprint footprint = Square(10.0);
  for (std::size_t i = 0; i < 4; ++i) footprint.m_vecRings[0][i].z = 50.0 + static_cast<double>(i);
  std::string strWarning;
  auto const pModel = MakeFootprintModel({footprint}, QXVector3d(0.0, 0.0, 100.0), strWarning);
  EXPECT_EQ(pModel->GetBoundingBox().m_dMin[2], 150.0);
  EXPECT_EQ(pModel->GetBoundingBox().m_dMax[2], 159.0);
}

TEST(QXFootprintModel, MapCoordinatesKeepAMillimetre) {
  QXGeoFootprint footprint;
  footprint.m_vecRings = {{QXVector3d(5176593.892, 9316520.134, 0), QXVector3d(5176600.755, 9316520.5, 0),
      QXVector3d(5176599.405, 9316531.164, 0)}};
  QXVector3d const vecShift(0.125, -0.5, 0.0);
  double dWorst = 1e9;
  for (QXVector3d const& vec : footprint.m_vecRings[0]) {
    dWorst = 1e9;
    for (Triangle const& triangle : Build({footprint}, vecShift))
      for (QXVector3d const& vecCorner : triangle.m_vecCorners)
        dWorst = std::min(dWorst, std::hypot(vecCorner.x - vec.x - vecShift.x, vecCorner.y - vec.y - vecShift.y));
    EXPECT_LT(dWorst, 0.001);
  }
}

TEST(QXFootprintModel, BuildingsFarApartHaveOriginsOfTheirOwn) {
  QXGeoFootprint far = Square(10.0);
  for (QXVector3d& vec : far.m_vecRings[0]) vec.x += 1e9;
  std::string strWarning;
  auto const pModel = MakeFootprintModel({Square(10.0), far}, QXVector3d(), strWarning);
  ASSERT_EQ(pModel->GetMeshCount(), 2);
  EXPECT_EQ(pModel->GetBoundingBox().m_dMax[0], 1e9 + 10.0);
  EXPECT_EQ(pModel->GetUpAxis(), QXC::QX_UP_Z);
}

TEST(QXFootprintModel, AnEightHasTwoRoofs) {
  QXGeoFootprint footprint;
  footprint.m_vecRings = {{QXVector3d(0, 0, 0), QXVector3d(10, 10, 0), QXVector3d(10, 0, 0), QXVector3d(0, 10, 0)}};
  EXPECT_NEAR(RoofArea(Build({footprint})), 50.0, 1e-4);
}

TEST(QXFootprintModel, WhatHasNoAreaOrTooManyCornersIsLeftOutAndCounted) {
  QXGeoFootprint line;
  line.m_vecRings = {{QXVector3d(0, 0, 0), QXVector3d(5, 0, 0), QXVector3d(10, 0, 0)}};
  QXGeoFootprint round;
  round.m_vecRings.resize(1);
  for (int i = 0; i < 2001; ++i) {
    double const dAngle = 2.0 * std::numbers::pi * i / 2001;
    round.m_vecRings[0].emplace_back(100.0 * std::cos(dAngle), 100.0 * std::sin(dAngle), 0.0);
  }
  std::string strWarning;
  EXPECT_EQ(MakeFootprintModel({line, round, QXGeoFootprint()}, QXVector3d(), strWarning), nullptr);
  EXPECT_THAT(strWarning, testing::StartsWith("3 footprints have no area"));
  round.m_vecRings[0].pop_back();
  EXPECT_NEAR(RoofArea(Build({round})), std::numbers::pi * 1e4, 100.0);
}

TEST(QXFootprintModel, EachBuildingIsAMesh) {
  std::string strWarning;
  auto const pModel = MakeFootprintModel(std::vector<QXGeoFootprint>(300, Square(10.0)), QXVector3d(), strWarning);
  EXPECT_EQ(pModel->GetMeshCount(), 300);
  EXPECT_EQ(pModel->GetNodeCount(), 300);
  EXPECT_EQ(pModel->GetTriangleCount(), 3000u);
}

}  // namespace
}  // namespace QXApp
