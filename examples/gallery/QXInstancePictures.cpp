// One mesh at thousands of places.
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QXColorValue3D;
using QXC::QXHwInstancingManager;
using QXC::QXInstancing;
using QXC::QXMatrix4d;
using QXC::QXVector3d;

/// Upright, turned about its height and larger or smaller than the mesh.
QXMatrix4d Place(double dX, double dY, double dTurn, double dSize, double dHeight) {
  QXMatrix4d mat;
  mat[0][0] = mat[1][1] = dSize * std::cos(dTurn);
  mat[0][1] = dSize * std::sin(dTurn);
  mat[1][0] = -mat[0][1];
  mat[2][2] = dHeight;
  mat.SetTrans(QXVector3d(dX, dY, 0.0));
  return mat;
}

/// Null if the renderer has not given one.
QXInstancing* MakeInstancing(QXGalleryStage& stage, wchar_t const* szName, QXGalleryMesh const& mesh) {
  QXHwInstancingManager* const pManager = stage.GetGraphics3D().GetHwInstancingManager();
  QXInstancing* const pInstancing = pManager ? pManager->CreateInstancing(szName, L"3D") : nullptr;
  return pInstancing && pManager->SetMesh(pInstancing, mesh.MakeOperation().get()) ? pInstancing : nullptr;
}

QXGalleryMesh MakeTree() {
  QXGalleryMesh tree;
  tree.AddCylinder({0.0, 0.0, 0.0}, 0.08, 0.06, 0.5, {0.45, 0.32, 0.2, 1.0});
  tree.AddCylinder({0.0, 0.0, 0.4}, 0.5, 0.0, 1.0, QXColorValue3D::White);
  tree.AddCylinder({0.0, 0.0, 0.9}, 0.36, 0.0, 0.8, QXColorValue3D::White);
  return tree;
}

void AddGround(QXGalleryStage& stage, double dHalf) {
  QXGalleryMesh ground;
  ground.AddQuad(
      {-dHalf, -dHalf, 0.0}, {dHalf, -dHalf, 0.0}, {dHalf, dHalf, 0.0}, {-dHalf, dHalf, 0.0}, {0.55, 0.62, 0.4, 1.0});
  stage.Add(ground);
}

bool DrawForest(QXGalleryStage& stage) {
  AddGround(stage, 110.0);
  QXInstancing* const pTrees = MakeInstancing(stage, L"trees", MakeTree());
  if (!pTrees) return false;
  QXHwInstancingManager& manager = *stage.GetGraphics3D().GetHwInstancingManager();
  std::mt19937 engine(7);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<QXMatrix4d> arrPlaces;
  for (int i = 0; i < 10000; ++i) {
    double const dX = -99.0 + 2.0 * (i % 100) + 1.6 * unit(engine);
    double const dY = -99.0 + 2.0 * static_cast<double>(i / 100) + 1.6 * unit(engine);
    arrPlaces.push_back(Place(dX, dY, 6.28 * unit(engine), 0.8 + 0.9 * unit(engine), 0.9 + 1.4 * unit(engine)));
  }
  unsigned int const nFirst = manager.AddPlacements(pTrees, arrPlaces.data(), 10000);
  for (unsigned int i = 0; i < 10000; ++i) {
    double const dDry = unit(engine);
    manager.SetPlacementColor(pTrees, nFirst + i, {0.25 + 0.4 * dDry, 0.5 + 0.1 * dDry, 0.2, 1.0});
  }
  stage.AddView({0.0, -112.0, 16.0}, {0.0, -60.0, 0.0});
  stage.DrawFrame();
  QXC::QdcUnicodeString strLine;
  strLine.Format(L"%u of 10,000 trees in sight, in one draw operation", manager.GetDrawnPlacementCount(pTrees));
  stage.Write(strLine, 12.0, 12.0);
  return true;
}

/// A hull of glass over wheels.
QXGalleryMesh MakeCar() {
  QXGalleryMesh car;
  car.AddBox({-1.1, -0.45, 0.15}, {1.1, 0.45, 0.55}, QXColorValue3D::White);
  car.AddBox({-0.7, -0.4, 0.55}, {0.5, 0.4, 0.95}, {0.5, 0.6, 0.7, 1.0});
  for (double const dX : {-0.7, 0.7})
    for (double const dY : {-0.46, 0.36})
      car.AddBox({dX - 0.18, dY, 0.0}, {dX + 0.18, dY + 0.1, 0.36}, {0.15, 0.15, 0.17, 1.0});
  return car;
}

bool DrawTraffic(QXGalleryStage& stage) {
  AddGround(stage, 60.0);
  QXGalleryMesh road;
  for (int i = -3; i <= 3; ++i)
    road.AddQuad({-60.0, 8.0 * i - 2.4, 0.01}, {60.0, 8.0 * i - 2.4, 0.01}, {60.0, 8.0 * i + 2.4, 0.01},
        {-60.0, 8.0 * i + 2.4, 0.01}, {0.4, 0.4, 0.42, 1.0});
  stage.Add(road);
  QXInstancing* const pCars = MakeInstancing(stage, L"cars", MakeCar());
  if (!pCars) return false;
  QXHwInstancingManager& manager = *stage.GetGraphics3D().GetHwInstancingManager();
  std::mt19937 engine(11);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::array<QXColorValue3D, 5> const arrPaints = {
      QXColorValue3D(0.8, 0.15, 0.12, 1.0), {0.15, 0.3, 0.7, 1.0}, CHALK, SLATE, {0.95, 0.75, 0.1, 1.0}};
  for (int nLane = 0; nLane < 14; ++nLane) {
    double const dY = 8.0 * (nLane / 2 - 3) + (nLane % 2 ? 1.2 : -1.2);
    for (double dX = -58.0 + 3.0 * unit(engine); dX < 58.0; dX += 2.8 + 6.0 * unit(engine)) {
      QXMatrix4d const matPlace = Place(dX, dY, nLane % 2 ? 3.14159265 : 0.0, 1.0, 1.0);
      unsigned int const nCar = manager.AddPlacements(pCars, &matPlace, 1);
      manager.SetPlacementColor(pCars, nCar, arrPaints[engine() % arrPaints.size()]);
    }
  }
  // They are drawn as far as they can be told apart.
  manager.SetVisibleDistance(pCars, 0.0, 75.0);
  stage.AddView({-12.0, -34.0, 14.0}, {6.0, 0.0, 0.0});
  return true;
}

bool DrawGlass(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  QXGalleryMesh ball;
  ball.AddSphere({0.0, 0.0, 0.0}, 0.3, QXColorValue3D::White);
  QXInstancing* const pBalls = MakeInstancing(stage, L"balls", ball);
  if (!pBalls) return false;
  QXHwInstancingManager& manager = *stage.GetGraphics3D().GetHwInstancingManager();
  for (unsigned int i = 0; i < 125; ++i) {
    QXMatrix4d matPlace;
    matPlace.SetTrans(QXVector3d(-3.0 + i % 5 * 1.5, -3.5 + i / 5 % 5 * 1.5, 0.8 + i / 25 * 0.8));
    unsigned int const nBall = manager.AddPlacements(pBalls, &matPlace, 1);
    manager.SetPlacementColor(pBalls, nBall, {0.3 + i % 5 * 0.17, 0.3 + i / 5 % 5 * 0.17, 0.3 + i / 25 * 0.17, 0.35});
  }
  stage.AddView({5.0, -9.0, 5.5}, {0.0, 0.0, 1.8});
  return true;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{"instances-forest", "Ten thousand trees, each with a size and a colour of its own.", DrawForest},
    QXGalleryPicture{
        "instances-traffic", "Cars as far as they can be told apart, one mesh and five paints.", DrawTraffic},
    QXGalleryPicture{"instances-glass", "Instances that let light through, blended from back to front.", DrawGlass},
};

}  // namespace

std::span<QXGalleryPicture const> GetInstancePictures() {
  return PICTURES;
}

}  // namespace QXGallery
