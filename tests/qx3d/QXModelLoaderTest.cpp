#include <apps/qx3d/QXModelLoader.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

using Type = QXC::QXFileType;
using Folder = QXAssimp::QXTestFolder;

/// A model that fills a box from the origin.
QXC::ModelDataInfo MakeBox(float x, float y, float z) {
  QXC::ModelDataInfo model;
  model.AddMesh(QXC::MakeMesh({0.0f, 0.0f, 0.0f, x, y, 0.0f, 0.0f, y, z}, {0, 1, 2}));
  model.AddNode(QXC::MakeNode(0, 0.0, 0.0, 0.0));
  return model;
}

TEST(QXModelLoader, FlatWideModelLiesDown) {
  EXPECT_TRUE(IsYUp(MakeBox(1638.0f, 60.0f, 2111.0f), Type::EM_MODEL_3DS, UpAxis::Auto));
  EXPECT_FALSE(IsYUp(MakeBox(1638.0f, 2111.0f, 60.0f), Type::EM_MODEL_OBJ, UpAxis::Auto));
}

TEST(QXModelLoader, OtherModelFollowsTheHabitOfItsFormat) {
  EXPECT_TRUE(IsYUp(MakeBox(2.0f, 3.0f, 4.0f), Type::EM_MODEL_OBJ, UpAxis::Auto));
  for (int nType : {Type::EM_MODEL_3DS, Type::EM_MODEL_STL, Type::EM_MODEL_PLY})
    EXPECT_FALSE(IsYUp(MakeBox(2.0f, 3.0f, 4.0f), nType, UpAxis::Auto));
}

TEST(QXModelLoader, ThePersonAndTheFileKnowBetter) {
  EXPECT_TRUE(IsYUp(MakeBox(100.0f, 100.0f, 1.0f), Type::EM_MODEL_3DS, UpAxis::Y));
  EXPECT_FALSE(IsYUp(MakeBox(100.0f, 1.0f, 100.0f), Type::EM_MODEL_3DS, UpAxis::Z));
  QXC::ModelDataInfo model = MakeBox(100.0f, 1.0f, 100.0f);
  model.SetUpAxis(QXC::QX_UP_Z);
  EXPECT_FALSE(IsYUp(model, Type::EM_MODEL_GLTF, UpAxis::Y)) << "the file states it";
}

TEST(QXModelLoader, ModelIsTurnedWithoutMirroring) {
  std::string strError;
  std::unique_ptr<QXC::ModelDataInfo> const pModel = LoadModel(QXAssimp::ModelPath("block.obj"), UpAxis::Y, strError);
  ASSERT_NE(pModel, nullptr) << strError;
  // x 0..2, y 0..3, z 0..4 becomes x 0..2, y -4..0, z 0..3.
  EXPECT_LT((pModel->GetBoundingBox().GetMin() - QXC::QXVector3d(0.0, -4.0, 0.0)).Length(), 1e-6);
  EXPECT_LT((pModel->GetBoundingBox().GetMax() - QXC::QXVector3d(2.0, 0.0, 3.0)).Length(), 1e-6);
  EXPECT_EQ(pModel->GetUpAxis(), QXC::QX_UP_Z);
}

TEST(QXModelLoader, FailuresSayTheSimplestReason) {
  Folder const folder;
  std::string strError;
  EXPECT_EQ(LoadModel(folder.Path("none.obj"), UpAxis::Auto, strError), nullptr);
  EXPECT_EQ(strError, "no such file; correct the name");
  EXPECT_EQ(LoadModel(folder.Path("none"), UpAxis::Auto, strError), nullptr);
  EXPECT_EQ(strError, "no such file; correct the name");
  EXPECT_EQ(LoadModel(folder.Path(), UpAxis::Auto, strError), nullptr);
  EXPECT_NE(strError.find("directory"), std::string::npos);
  EXPECT_EQ(LoadModel(folder.Write("a.doc", "x"), UpAxis::Auto, strError), nullptr);
  EXPECT_EQ(strError, "unknown kind of model; readable are .3ds .gltf .glb .obj .ply .stl .dae .fbx");
}

TEST(QXModelLoader, NameThatIsNoTextIsToldApartFromAMissingFile) {
  Folder const folder;
  std::string strError;
  EXPECT_EQ(LoadModel(folder.Write("\xFF\xFE.obj", "v 0 0 0\n"), UpAxis::Auto, strError), nullptr);
  EXPECT_EQ(strError, "the name is no UTF-8 text; rename the file");
}

TEST(QXModelLoader, CoordinatesBeyondWhatDevicesComputeAreRefused) {
  Folder const folder;
  std::string strError;
  auto const load = [&](std::string const& strFar) {
    return LoadModel(
        folder.Write("a.obj", "v 0 0 0\nv " + strFar + " 0 0\nv 0 1 0\nf 1 2 3\n"), UpAxis::Auto, strError);
  };
  EXPECT_NE(load("9e14"), nullptr) << strError;
  EXPECT_EQ(load("1.1e15"), nullptr);
  EXPECT_NE(strError.find("beyond 1e15"), std::string::npos);
  EXPECT_EQ(load("-1e38"), nullptr);
  EXPECT_NE(strError.find("beyond 1e15"), std::string::npos);
}

}  // namespace
}  // namespace QXApp
