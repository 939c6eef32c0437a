#include <apps/qx3d/QXTextureShelf.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullTexture.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

class QXTextureShelfTest : public testing::Test {
protected:
  void SetUp() override {
    std::string const strPath = QXAssimp::ModelPath("quarters.png");
    QXC::ModelDataInfo model;
    // The same file under two numbers, as two models of one host would have it.
    for (int i = 0; i < 2; ++i) {
      auto* pImage = new QXC::QXModelImage;
      pImage->m_strFilePath = QXC::QdcUnicodeString::FromUTF8(strPath.c_str());
      QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
      pMesh->m_Texture.m_nImage = model.AddImage(pImage);
      model.AddMesh(pMesh);
    }
    std::vector<std::string> vecProblems;
    m_Pictures.Load(model, vecProblems);
    ASSERT_TRUE(vecProblems.empty()) << vecProblems[0];
    m_Key.m_nImage = 0;
  }

  QXC::QXNullTextureManager& Manager() {
    return static_cast<QXC::QXNullTextureManager&>(*m_Graphics3D.GetTextureManager());
  }

  QXC::QXNullGraphics3D m_Graphics3D;
  QXModelPictures m_Pictures;
  QXTextureKey m_Key;
  QXTextureShelf m_Shelf;
  std::string m_strProblem;
};

TEST_F(QXTextureShelfTest, TextureIsOnTheDeviceAndLetsItsImageGo) {
  QXC::QXTexture* pTexture = m_Shelf.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem);
  ASSERT_NE(pTexture, nullptr) << m_strProblem;
  EXPECT_EQ(m_strProblem, "");
  EXPECT_NE(pTexture->IsLoaded(), 0);
  EXPECT_EQ(pTexture->GetTextureData()->m_pPixels, nullptr);
  EXPECT_EQ(pTexture->GetRef(), 1);
  auto const& null = static_cast<QXC::QXNullTexture const&>(*pTexture);
  ASSERT_EQ(null.GetDevicePixels().size(), 8u * 8 * 4);
  // Red, stored as blue, green, red, alpha.
  EXPECT_EQ(null.GetDevicePixels()[0], 0);
  EXPECT_EQ(null.GetDevicePixels()[2], 255);
}

TEST_F(QXTextureShelfTest, OneNameIsOneTextureCountedOnce) {
  QXC::QXTexture* pFirst = m_Shelf.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem);
  m_Key.m_nImage = 1;
  EXPECT_EQ(m_Shelf.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem), pFirst);
  EXPECT_EQ(pFirst->GetRef(), 1);
  EXPECT_EQ(m_Shelf.GetCount(), 1u);
  m_Key.m_bRepeat = true;
  EXPECT_NE(m_Shelf.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem), pFirst);
  EXPECT_EQ(Manager().GetTextureCount(), 2u);
}

TEST_F(QXTextureShelfTest, GivenBackTexturesLeaveTheStoreUnlessOthersHoldThem) {
  QXC::QXTexture* pTexture = m_Shelf.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem);
  QXTextureShelf other;
  EXPECT_EQ(other.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem), pTexture);
  EXPECT_EQ(pTexture->GetRef(), 2);
  m_Shelf.GiveBack(m_Graphics3D);
  EXPECT_EQ(m_Shelf.GetCount(), 0u);
  EXPECT_EQ(pTexture->GetRef(), 1);
  other.GiveBack(m_Graphics3D);
  EXPECT_EQ(Manager().GetTextureCount(), 0u);
}

TEST_F(QXTextureShelfTest, RendererWithoutTexturesIsToldOnce) {
  QXC::QXTextureManager* pManager = m_Graphics3D.m_pTextureManager;
  m_Graphics3D.m_pTextureManager = nullptr;
  EXPECT_EQ(m_Shelf.Take(m_Graphics3D, m_Pictures, m_Key, m_strProblem), nullptr);
  EXPECT_NE(m_strProblem.find("keeps no textures"), std::string::npos);
  m_Graphics3D.m_pTextureManager = pManager;
}

}  // namespace
}  // namespace QXApp
