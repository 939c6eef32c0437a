#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXSceneModels.h>

#include <tests/assimp/QXTestFiles.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Folder = QXAssimp::QXTestFolder;

QXVector3d Placed(QXSceneModel const& model, QXVector3d const& vec) {
  return vec.MultiplyMatrix(MakePlacement(model));
}

TEST(QXSceneModels, HeadingTurnsClockwiseFromNorth) {
  QXSceneModel model;
  model.m_dHeading = 90.0;
  EXPECT_EQ(Placed(model, QXVector3d(0.0, 1.0, 0.0)), QXVector3d(1.0, 0.0, 0.0));
  EXPECT_EQ(Placed(model, QXVector3d(1.0, 0.0, 5.0)), QXVector3d(0.0, -1.0, 5.0));
  model.m_dHeading = -450.0 + 360.0;
  EXPECT_EQ(Placed(model, QXVector3d(0.0, 1.0, 0.0)), QXVector3d(-1.0, 0.0, 0.0));
  model.m_dHeading = 180.0;
  EXPECT_EQ(Placed(model, QXVector3d(3.0, 1.0, 0.0)), QXVector3d(-3.0, -1.0, 0.0));
  model.m_dHeading = 30.0;
  EXPECT_LT((Placed(model, QXVector3d(0.0, 1.0, 0.0)) - QXVector3d(0.5, std::sqrt(0.75), 0.0)).Length(), 1e-15);
}

TEST(QXSceneModels, PitchLiftsTheNorthAndRollLowersTheEast) {
  QXSceneModel model;
  model.m_dPitch = 90.0;
  EXPECT_EQ(Placed(model, QXVector3d(0.0, 1.0, 0.0)), QXVector3d(0.0, 0.0, 1.0));
  model.m_dPitch = 0.0;
  model.m_dRoll = 90.0;
  EXPECT_EQ(Placed(model, QXVector3d(1.0, 0.0, 0.0)), QXVector3d(0.0, 0.0, -1.0));
}

TEST(QXSceneModels, ScaleRollPitchHeadingPosition) {
  QXSceneModel model;
  model.m_dScale = 2.0;
  model.m_dRoll = 90.0;
  model.m_dPitch = 90.0;
  model.m_dHeading = 90.0;
  model.m_vecPosition = QXVector3d(604099.125, 5792153.25, 71.5);
  // x: rolled to -z, pitched to y (down becomes north), headed to x (east).
  EXPECT_EQ(Placed(model, QXVector3d(1.0, 0.0, 0.0)), QXVector3d(604101.125, 5792153.25, 71.5));
  // y: stays, pitched to z, stays.
  EXPECT_EQ(Placed(model, QXVector3d(0.0, 1.0, 0.0)), QXVector3d(604099.125, 5792153.25, 73.5));
}

TEST(QXSceneModels, IconsReachAsFarAsTheyAreLarge) {
  QXSceneFile scene;
  EXPECT_TRUE(GetIconBounds(scene).IsNULL());
  scene.m_vecIcons.resize(2);
  scene.m_vecIcons[0].m_vecPosition = QXVector3d(10.0, 20.0, 30.0);
  scene.m_vecIcons[0].m_dWidth = 100.0;
  scene.m_vecIcons[0].m_dHeight = 100.0;
  scene.m_vecIcons[1].m_vecPosition = QXVector3d(0.0, 20.0, 30.0);
  scene.m_vecIcons[1].m_eUnit = QXIconUnit::World;
  scene.m_vecIcons[1].m_dWidth = 6.0;
  scene.m_vecIcons[1].m_dHeight = 4.0;
  // From the middle of the lower edge to an upper corner: 3 aside and 4 up.
  QXC::QXBoundingBox const box = GetIconBounds(scene);
  EXPECT_EQ(box.GetMin(), QXVector3d(-5.0, 15.0, 25.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(10.0, 25.0, 35.0));
}

TEST(QXSceneModels, FlatLabelsHaveBoundsOfTheirLength) {
  QXSceneFile scene;
  EXPECT_TRUE(GetLabelBounds(scene).IsNULL());
  scene.m_vecLabels.resize(2);
  scene.m_vecLabels[0].m_strText = "a long text that is of some pixels";
  scene.m_vecLabels[0].m_vecPosition = QXVector3d(10.0, 20.0, 30.0);
  scene.m_vecLabels[0].m_dOffset[0] = 1000.0;
  scene.m_vecLabels[1].m_strText = "\xE5\x8C\x97\xE4\xBA\xAC"
                                   "ab";
  scene.m_vecLabels[1].m_vecPosition = QXVector3d(0.0, 20.0, 30.0);
  scene.m_vecLabels[1].m_eFacing = QXLabelFacing::Flat;
  scene.m_vecLabels[1].m_dHeight = 6.0;
  scene.m_vecLabels[1].m_dOffset[0] = 3.0;
  scene.m_vecLabels[1].m_dOffset[1] = 4.0;
  // Four letters of 3 each about the position, whatever way it is turned, and 5 of the offset.
  QXC::QXBoundingBox const box = GetLabelBounds(scene);
  EXPECT_EQ(box.GetMin(), QXVector3d(-17.0, 3.0, 30.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(17.0, 37.0, 30.0));
}

/// What loading a scene does.
struct Loaded {
  explicit Loaded(QXSceneFile const& scene, UpAxis eUp = UpAxis::Z) {
    QXSceneProblems problems("a.qxscene");
    m_Models.Load(
        scene, eUp, [this](std::string const& strStep) { m_vecSteps.push_back(strStep); }, problems, m_vecPictures);
    m_vecProblems = problems.GetLines();
  }
  QXSceneModels m_Models;
  std::vector<std::string> m_vecSteps;
  std::vector<std::string> m_vecProblems;
  std::vector<std::string> m_vecPictures;
};

QXSceneModel MakeModel(std::string const& strFile, int nLine) {
  QXSceneModel model;
  model.m_strFile = strFile;
  model.m_nLine = nLine;
  return model;
}

QXC::QXBoundingBox Nothing() {
  QXC::QXBoundingBox box;
  box.SetNULL();
  return box;
}

QXVector3d FirstVertex(QXC::QXStaticGeometry const& geometry) {
  float const* p = GetBuckets(geometry).at(0)->m_pVertexPackage->m_pVertices;
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
      .MultiplyMatrix(geometry.GetLocalViewMatrix());
}

TEST(QXSceneModels, FilePlacedOftenIsReadOnce) {
  QXSceneFile scene;
  std::string const strBlock = QXAssimp::ModelPath("block.obj");
  for (int i = 0; i < 50; ++i) {
    scene.m_vecModels.push_back(MakeModel(i % 2 == 0 ? strBlock : QXAssimp::ModelPath("./../models/block.obj"), i + 1));
    scene.m_vecModels.back().m_vecPosition = QXVector3d(10.0 * i, 0.0, 0.0);
  }
  Loaded loaded(scene);
  EXPECT_THAT(loaded.m_vecProblems, IsEmpty());
  EXPECT_THAT(loaded.m_vecSteps, ElementsAre("reading " + strBlock));
  EXPECT_EQ(loaded.m_Models.GetTriangleCount(), 600u);
  QXScene const built = loaded.m_Models.Build(Nothing());
  EXPECT_EQ(built.m_nTriangles, 600u);
  EXPECT_EQ(built.m_nMeshes, 50u);
  ASSERT_EQ(built.m_vecGeometries.size(), 1u);
  std::vector<QXC::QXStaticGeometryBucket*> const vecBuckets = GetBuckets(*built.m_vecGeometries[0]);
  ASSERT_EQ(vecBuckets.size(), 1u);
  EXPECT_EQ(GetTriangleRanges(*vecBuckets[0]).size(), 1u) << "all placements in one range";
  EXPECT_EQ(built.m_Bounds.GetMax().x - built.m_Bounds.GetMin().x, 490.0 + 2.0);
}

TEST(QXSceneModels, SameFileWithAnotherUpAxisIsReadAgain) {
  QXSceneFile scene;
  scene.m_vecModels = {MakeModel(QXAssimp::ModelPath("block.obj"), 1), MakeModel(QXAssimp::ModelPath("block.obj"), 2)};
  scene.m_vecModels[1].m_eUp = UpAxis::Y;
  Loaded loaded(scene);
  EXPECT_EQ(loaded.m_vecSteps.size(), 2u);
  Loaded const alike(scene, UpAxis::Y);
  EXPECT_EQ(alike.m_vecSteps.size(), 1u) << "the command line's axis for those without one";
}

TEST(QXSceneModels, EveryModelThatCannotBeReadIsToldOnceAtItsLine) {
  Folder const folder;
  QXSceneFile scene;
  std::string const strBad = folder.Write("bad.obj", "v 0 0 0\n");
  std::string const strText = folder.Write("text.doc", "x");
  scene.m_vecModels = {MakeModel(strBad, 2), MakeModel(QXAssimp::ModelPath("block.obj"), 4), MakeModel(strBad, 6),
      MakeModel(strText, 8)};
  Loaded const loaded(scene);
  EXPECT_THAT(loaded.m_vecProblems,
      ElementsAre(HasSubstr("a.qxscene:2: " + strBad + ": "), HasSubstr("a.qxscene:8: " + strText + ": unknown kind")));
}

TEST(QXSceneModels, ModelWithoutALineIsToldWithoutOne) {
  QXSceneFile scene;
  scene.m_vecModels = {MakeModel("gone.obj", 0)};
  EXPECT_THAT(Loaded(scene).m_vecProblems, ElementsAre("a.qxscene: no such file; correct the name"));
}

TEST(QXSceneModels, PlacesBeyondWhatCanBeShownAreTold) {
  QXSceneFile scene;
  scene.m_vecModels = {MakeModel(QXAssimp::ModelPath("block.obj"), 3)};
  scene.m_vecModels[0].m_vecPosition = QXVector3d(1e15, 0.0, 0.0);
  EXPECT_THAT(Loaded(scene).m_vecProblems, ElementsAre(HasSubstr("a.qxscene:3: ")));
  scene.m_vecModels[0].m_vecPosition = QXVector3d(1e14, 0.0, 0.0);
  EXPECT_THAT(Loaded(scene).m_vecProblems, IsEmpty());
  scene.m_vecModels[0].m_dScale = 1e15;
  EXPECT_THAT(Loaded(scene).m_vecProblems, ElementsAre(HasSubstr("beyond 1e15")));
}

TEST(QXSceneModels, MoreTrianglesThanCanBeShownAreToldOnce) {
  Folder const folder;
  std::string strObj = "v 0 0 0\nv 1 0 0\nv 0 1 1\n";
  for (int i = 0; i < 2000; ++i) strObj += "f 1 2 3\n";
  QXSceneFile scene;
  std::string const strPath = folder.Write("dense.obj", strObj);
  for (int i = 0; i < 100000; ++i) scene.m_vecModels.push_back(MakeModel(strPath, i + 1));
  EXPECT_THAT(Loaded(scene).m_vecProblems, ElementsAre(HasSubstr("100000000 triangles or vertices together")));
}

TEST(QXSceneModels, MissingPictureOfTwoModelsIsToldOnce) {
  Folder const folder;
  folder.Write("sign.mtl", "newmtl m\nmap_Kd gone.png\n");
  std::string const strObj = "mtllib sign.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 1\nvt 0 0\nusemtl m\nf 1/1 2/1 3/1\n";
  QXSceneFile scene;
  scene.m_vecModels = {MakeModel(folder.Write("a.obj", strObj), 1), MakeModel(folder.Write("b.obj", strObj), 2)};
  Loaded const loaded(scene);
  EXPECT_THAT(loaded.m_vecProblems, IsEmpty());
  EXPECT_THAT(loaded.m_vecPictures, ElementsAre(HasSubstr("gone.png")));
}

TEST(QXSceneModels, PlacesFarApartStayExact) {
  QXSceneFile scene;
  scene.m_vecModels = {MakeModel(QXAssimp::ModelPath("block.obj"), 1), MakeModel(QXAssimp::ModelPath("block.obj"), 2)};
  scene.m_vecModels[0].m_vecPosition = QXVector3d(-4000000.125, 0.0, 0.0);
  scene.m_vecModels[1].m_vecPosition = QXVector3d(4000000.125, 100.0, 0.0);
  Loaded loaded(scene);
  QXScene const built = loaded.m_Models.Build(Nothing());
  ASSERT_EQ(built.m_vecGeometries.size(), 2u);
  for (auto const& pGeometry : built.m_vecGeometries) {
    double const dNearest = std::remainder(FirstVertex(*pGeometry).x, 1.0);
    EXPECT_NEAR(std::fabs(dNearest), 0.125, 0.01) << "floats eight million units wide would have steps of 0.5";
  }
}

TEST(QXSceneModels, OtherThingsOfTheSceneBelongToItsBounds) {
  QXSceneFile scene;
  scene.m_vecModels = {MakeModel(QXAssimp::ModelPath("block.obj"), 1)};
  Loaded loaded(scene);
  QXScene const built =
      loaded.m_Models.Build(QXC::QXBoundingBox(QXVector3d(50.0, 50.0, 50.0), QXVector3d(60.0, 60.0, 60.0)));
  EXPECT_EQ(built.m_Bounds.GetMax(), QXVector3d(60.0, 60.0, 60.0));
  EXPECT_EQ(built.m_Core.GetMax(), QXVector3d(60.0, 60.0, 60.0));
  Loaded none((QXSceneFile()));
  QXScene const icons =
      none.m_Models.Build(QXC::QXBoundingBox(QXVector3d(50.0, 50.0, 50.0), QXVector3d(60.0, 60.0, 60.0)));
  EXPECT_EQ(icons.m_Core.GetMin(), QXVector3d(50.0, 50.0, 50.0));
  EXPECT_EQ(icons.m_vecOrigin, QXVector3d(55.0, 55.0, 55.0));
}

}  // namespace
}  // namespace QXApp
