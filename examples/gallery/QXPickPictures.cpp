// What a person points at.
#include <array>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QXColorValue3D;
using QXC::QXVector3d;

/// Where the picture is pointed at, from its lower left corner.
constexpr int AT_X = 268;
constexpr int AT_Y = 190;

void AddTowers(QXGalleryStage& stage) {
  for (int i = 0; i < 25; ++i) {
    QXGalleryMesh tower;
    double const dX = -5.0 + i % 5 * 2.2;
    double const dY = -5.0 + i / 5 * 2.2;
    tower.AddBox({dX, dY, 0.0}, {dX + 1.2, dY + 1.2, 0.8 + 0.45 * (i * 7 % 6)}, i % 2 == 0 ? CHALK : SLATE);
    stage.Add(tower).SetSelectionID(stage.GetGraphics3D().m_SceneOperation.GetID(1 + i % 2, i + 1));
  }
  QXGalleryMesh floor;
  floor.AddFloor(8, {0.62, 0.66, 0.55, 1.0}, {0.58, 0.62, 0.5, 1.0});
  stage.Add(floor);
}

bool DrawHit(QXGalleryStage& stage) {
  AddTowers(stage);
  stage.AddView({6.0, -10.0, 8.0}, {0.0, 0.0, 0.5});
  stage.DrawFrame();
  QXVector3d vecHit;
  unsigned int const nID = stage.GetGraphics3D().PickObject(AT_X, AT_Y, vecHit);
  if (nID == 0) return false;
  QXC::QdcArray<unsigned int> arrIDs;
  arrIDs.Add(nID);
  stage.GetGraphics3D().SetSelectedObjects(arrIDs);
  // A needle where the ray met the object.
  QXGalleryMesh needle;
  needle.AddCylinder({0.0, 0.0, 0.0}, 0.0, 0.12, 0.9, {0.9, 0.1, 0.1, 1.0});
  QXC::QXMatrix4d matPlace;
  matPlace.SetTrans(vecHit);
  stage.Add(needle).SetModelMatrix(matPlace);
  int nLayer = 0;
  int nObject = 0;
  stage.GetGraphics3D().m_SceneOperation.GetID(nID, nLayer, nObject);
  QXC::QdcUnicodeString strLine;
  strLine.Format(L"layer %d, object %d at %.2f %.2f %.2f", nLayer, nObject, vecHit.x, vecHit.y, vecHit.z);
  stage.Write(strLine, 14.0, 14.0);
  return true;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{"pick", "What is at a pixel: the object highlighted, a needle where it was hit.", DrawHit},
};

}  // namespace

std::span<QXGalleryPicture const> GetPickPictures() {
  return PICTURES;
}

}  // namespace QXGallery
