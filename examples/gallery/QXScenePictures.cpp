// What a scene has without lights, sky or effects of its own.
#include <array>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/renderop/QXBillboard.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QXColorValue3D;
using QXC::QXVector3d;

bool DrawSun(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.AddView({5.0, -9.0, 5.0}, {0.0, 0.0, 0.7});
  return true;
}

bool DrawGlass(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  for (int i = 0; i < 3; ++i) {
    double const dY = -1.0 - i;
    QXColorValue3D const color(i == 0 ? 0.9 : 0.2, i == 1 ? 0.9 : 0.3, i == 2 ? 0.9 : 0.2, 0.45);
    QXGalleryMesh pane;
    pane.AddQuad({-4.0 + 1.5 * i, dY, 0.0}, {1.0 + 1.5 * i, dY, 0.0}, {1.0 + 1.5 * i, dY, 2.5 - 0.5 * i},
        {-4.0 + 1.5 * i, dY, 2.5 - 0.5 * i}, color);
    stage.Add(pane);
  }
  stage.AddView({3.0, -10.0, 4.0}, {0.0, 0.0, 0.9});
  return true;
}

bool DrawFarAway(QXGalleryStage& stage) {
  QXVector3d const vecPlace(6000000.0, -6000000.0, 0.0);
  stage.GetGraphics3D().SetRelativeOrigin(vecPlace);
  // The light falls from the sun towards the movable origin.
  stage.GetTarget().SetSunPosition(vecPlace + QXVector3d(-1.0e6, -1.6e6, 2.2e6));
  QXC::QXMatrix4d matModel;
  matModel.SetTrans(vecPlace);
  stage.Add(MakeYard()).SetModelMatrix(matModel);
  stage.AddView(vecPlace + QXVector3d(5.0, -9.0, 5.0), vecPlace + QXVector3d(0.0, 0.0, 0.7));
  return true;
}

bool DrawBillboards(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  for (int i = 0; i < 60; ++i) {
    QXC::QXBillboard& billboard = stage.Keep(stage.GetManager().CreateBillboard(L"3D"));
    billboard.SetPosition({-5.0 + i % 10 * 1.1, -4.5 + i / 10 * 1.8, 0.1});
    billboard.SetSize(0.28, 0.4 + 0.1 * (i % 3), 0);
    billboard.SetColor(i % 3 == 0 ? BRICK : i % 3 == 1 ? LEAF : SLATE);
  }
  stage.AddView({5.0, -9.0, 5.0}, {0.0, 0.0, 0.7});
  return true;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{"scene-sun", "A scene in the light of the sun, as every one is lit at first.", DrawSun},
    QXGalleryPicture{"scene-glass", "Panes of glass, blended from back to front.", DrawGlass},
    QXGalleryPicture{"scene-far", "The same scene at x = 6,000,000 and y = -6,000,000: nothing trembles.", DrawFarAway},
    QXGalleryPicture{
        "scene-billboards", "Sixty rectangles that face the camera, in one draw operation.", DrawBillboards},
};

}  // namespace

std::span<QXGalleryPicture const> GetScenePictures() {
  return PICTURES;
}

}  // namespace QXGallery
