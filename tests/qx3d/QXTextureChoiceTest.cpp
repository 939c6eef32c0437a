#include <apps/qx3d/QXTextureChoice.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

/// A triangle with an opaque picture, or with one that lets something through, and coordinates from 0 to 1.
class QXTextureChoiceTest : public testing::Test {
protected:
  void SetUp() override {
    // One pixel of alpha 128.
    std::string const strClear = m_Folder.Write("clear.tga",
        std::vector<unsigned char>{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 32, 0x28, 1, 2, 3, 128});
    for (std::string const& strPath : {QXAssimp::ModelPath("quarters.png"), strClear}) {
      auto* pImage = new QXC::QXModelImage;
      pImage->m_strFilePath = QXC::QdcUnicodeString::FromUTF8(strPath.c_str());
      QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
      pMesh->m_pVertexPackage->SetTexCoordNum(0, 3, 0);
      pMesh->m_Texture.m_nImage = m_Model.AddImage(pImage);
      SetCoords(*pMesh, {0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 1.0f});
      m_Model.AddMesh(pMesh);
    }
    std::vector<std::string> vecProblems;
    m_Pictures.Load(m_Model, vecProblems);
    ASSERT_TRUE(vecProblems.empty()) << vecProblems[0];
  }

  static void SetCoords(QXC::QXModelMesh& mesh, std::vector<float> const& vecCoords) {
    std::copy(vecCoords.begin(), vecCoords.end(), mesh.m_pVertexPackage->m_pTexCoords[0]);
  }
  QXC::QXModelMesh& Opaque() { return *m_Model.GetMesh(0); }
  QXC::QXModelMesh& Clear() { return *m_Model.GetMesh(1); }
  QXTextureKey KeyOf(QXC::QXModelMesh const& mesh) { return QXTextureChoice(mesh, m_Pictures).GetKey(); }
  void SetWrap(QXC::QXModelWrap eWrapU, QXC::QXModelWrap eWrapV) {
    Opaque().m_Texture.m_eWrapU = eWrapU;
    Opaque().m_Texture.m_eWrapV = eWrapV;
  }

  QXAssimp::QXTestFolder m_Folder;
  QXC::ModelDataInfo m_Model;
  QXModelPictures m_Pictures;
};

TEST_F(QXTextureChoiceTest, MeshWithoutAUsablePictureHasNoTexture) {
  EXPECT_EQ(QXTextureChoice(Opaque(), QXModelPictures()).GetKey(), QXTextureKey());
  Opaque().m_Texture.m_nImage = -1;
  EXPECT_EQ(KeyOf(Opaque()).m_nImage, -1);
}

TEST_F(QXTextureChoiceTest, BothAxesRepeatOrClamp) {
  EXPECT_TRUE(KeyOf(Opaque()).m_bRepeat);
  SetWrap(QXC::QX_WRAP_CLAMP, QXC::QX_WRAP_CLAMP);
  EXPECT_FALSE(KeyOf(Opaque()).m_bRepeat);
}

TEST_F(QXTextureChoiceTest, OneOfEachFollowsTheAxisThatLeavesThePicture) {
  SetWrap(QXC::QX_WRAP_REPEAT, QXC::QX_WRAP_CLAMP);
  EXPECT_FALSE(KeyOf(Opaque()).m_bRepeat);
  SetCoords(Opaque(), {0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 5.0f});
  EXPECT_FALSE(KeyOf(Opaque()).m_bRepeat);
  SetCoords(Opaque(), {0.0f, 0.0f, 5.0f, 0.0f, 0.0f, 1.0f});
  EXPECT_TRUE(KeyOf(Opaque()).m_bRepeat);
  SetWrap(QXC::QX_WRAP_CLAMP, QXC::QX_WRAP_REPEAT);
  EXPECT_FALSE(KeyOf(Opaque()).m_bRepeat);
  // By the transform it comes back inside, or leaves.
  Opaque().m_Texture.m_matTransform[3][1] = -0.5;
  EXPECT_TRUE(KeyOf(Opaque()).m_bRepeat);
}

TEST_F(QXTextureChoiceTest, MirroredAxisHasHalfTheCoordinates) {
  SetWrap(QXC::QX_WRAP_REPEAT, QXC::QX_WRAP_MIRROR);
  SetCoords(Opaque(), {0.0f, 0.0f, 1.0f, 3.0f, 0.0f, 1.0f});
  QXTextureChoice const choice(Opaque(), m_Pictures);
  EXPECT_TRUE(choice.GetKey().m_bRepeat);
  EXPECT_FALSE(choice.GetKey().m_bMirrorU);
  EXPECT_TRUE(choice.GetKey().m_bMirrorV);
  EXPECT_EQ(choice.GetTexCoord(1).x, 1.0);
  EXPECT_EQ(choice.GetTexCoord(1).y, 1.5);
}

TEST_F(QXTextureChoiceTest, TransformGoesIntoTheCoordinates) {
  Opaque().m_Texture.m_matTransform[0][0] = 2.0;
  Opaque().m_Texture.m_matTransform[0][1] = 0.5;
  Opaque().m_Texture.m_matTransform[3][0] = 0.25;
  QXTextureChoice const choice(Opaque(), m_Pictures);
  EXPECT_EQ(choice.GetTexCoord(1).x, 2.25);
  EXPECT_EQ(choice.GetTexCoord(1).y, 0.5);
}

TEST_F(QXTextureChoiceTest, AlphaModeOfAnOpaquePictureMakesNoDifference) {
  QXTextureKey const key = KeyOf(Opaque());
  for (QXC::QXModelAlpha eAlpha : {QXC::QX_ALPHA_OPAQUE, QXC::QX_ALPHA_MASK, QXC::QX_ALPHA_BLEND}) {
    Opaque().m_Texture.m_eAlpha = eAlpha;
    EXPECT_EQ(KeyOf(Opaque()), key);
    EXPECT_FALSE(QXTextureChoice(Opaque(), m_Pictures).IsTransparent());
  }
}

TEST_F(QXTextureChoiceTest, AlphaModeOfATransparentPictureIsFollowed) {
  EXPECT_EQ(KeyOf(Clear()).m_eAlpha, QXC::QX_ALPHA_AUTO);
  EXPECT_TRUE(QXTextureChoice(Clear(), m_Pictures).IsTransparent());
  Clear().m_Texture.m_eAlpha = QXC::QX_ALPHA_OPAQUE;
  EXPECT_EQ(KeyOf(Clear()).m_eAlpha, QXC::QX_ALPHA_OPAQUE);
  EXPECT_FALSE(QXTextureChoice(Clear(), m_Pictures).IsTransparent());
  Clear().m_Texture.m_eAlpha = QXC::QX_ALPHA_MASK;
  EXPECT_EQ(KeyOf(Clear()).m_eAlpha, QXC::QX_ALPHA_MASK);
  EXPECT_EQ(KeyOf(Clear()).m_nThreshold, 128);
  // Nothing is below 0, and nothing reaches more than 1.
  Clear().m_Texture.m_dAlphaCutoff = 0.0;
  EXPECT_EQ(KeyOf(Clear()).m_eAlpha, QXC::QX_ALPHA_OPAQUE);
  Clear().m_Texture.m_dAlphaCutoff = 9.0;
  EXPECT_EQ(KeyOf(Clear()).m_nThreshold, 256);
}

}  // namespace
}  // namespace QXApp
