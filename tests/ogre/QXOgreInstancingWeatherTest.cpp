// Textures, lights and fog on instances: what drawables take, instances take.
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

#include <tests/ogre/QXOgreInstancing.h>
#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

class QXOgreInstancingTextures : public QXOgreTexturing {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    m_pManager = m_pGraphics3D->GetHwInstancingManager();
    m_pTrees = m_pManager->CreateInstancing(L"trees", L"3D");
    ASSERT_NE(m_pTrees, nullptr);
  }
  void Add(double dX, double dY) {
    QXMatrix4d mat;
    mat.SetTrans(QXVector3d(dX, dY, 0.0));
    m_pManager->AddPlacements(m_pTrees, &mat, 1);
  }
  QXTexture* MakePlain(unsigned char r, unsigned char g, unsigned char b, unsigned char a = 255) {
    QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {b, g, r, a});
    return pTexture;
  }
  /// A small square with coordinates in a set.
  static std::unique_ptr<QXRenderOperationMultiIndex> MakeSmall(unsigned int nSet = 0) {
    auto pMesh = MakeMesh({{-0.2F, -0.2F, 0}, {0.2F, -0.2F, 0}, {0.2F, 0.2F, 0}, {-0.2F, 0.2F, 0}});
    AddTexCoords(*pMesh, nSet, {0, 1, 1, 1, 1, 0, 0, 0});
    return pMesh;
  }

  QXHwInstancingManager* m_pManager = nullptr;
  QXInstancing* m_pTrees = nullptr;
};

TEST_F(QXOgreInstancingTextures, EachRangeShowsItsOwn) {
  auto const pMesh = MakeTexturedMesh(1.0F, -0.2F, -0.2F, 0.2F, 0.2F);
  QXTexture* const pTexture =
      MakeTexture(2, 2, PF_A8R8G8B8, {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 255, 255, 255, 255, 255});
  auto const addHalf = [&](std::vector<unsigned short> const& arrIndices, QXTexture* pHalf) {
    auto* const pPackage = new QXTexturePackage;
    pPackage->m_pTextures[0] = pHalf;
    AddRange<unsigned short>(*pMesh, arrIndices);
    pMesh->m_arrTexturePackages[pMesh->m_arrTexturePackages.GetSize() - 1] = pPackage;
  };
  addHalf({0, 1, 2}, pTexture);
  addHalf({0, 2, 3}, MakePlain(255, 255, 0));
  ASSERT_EQ(m_pManager->SetMesh(m_pTrees, pMesh.get()), 1);
  Add(-0.5, 0.0);
  Add(0.5, 0.5);
  QXPicture const picture = Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
  for (unsigned int const x : {16U, 48U}) {
    unsigned int const y = x == 16 ? 32 : 16;
    EXPECT_EQ(picture.At(x + 3, y + 5), (QXPixel{255, 255, 255, 255}));
    EXPECT_EQ(picture.At(x + 5, y - 3), GREEN_PIXEL);
    EXPECT_EQ(picture.At(x - 3, y + 5), (QXPixel{0, 0, 255, 255}));
    EXPECT_EQ(picture.At(x - 4, y - 2), (QXPixel{255, 255, 0, 255}));
  }
}

TEST_F(QXOgreInstancingTextures, OneThatDiesLeavesTheColor) {
  auto const pMesh = MakeSmall();
  QXTexture* const pTexture = MakePlain(0, 255, 0);
  AddTexturedRange(*pMesh, pTexture, QXColorValue3D(1.0, 1.0, 0.0, 1.0));
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  Add(0.0, 0.0);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  Delete(pTexture);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 255, 0, 255}));
}

TEST_F(QXOgreInstancingTextures, ThatLetsThroughIsBlended) {
  DrawSquare(-1, -1, 1, 1, -1, GREEN);
  auto const pMesh = MakeSmall();
  QXTexture* const pTexture = MakePlain(255, 0, 0, 128);
  pTexture->m_bHasTransparentData = 1;
  AddTexturedRange(*pMesh, pTexture);
  m_pManager->SetMesh(m_pTrees, pMesh.get());
  Add(0.0, 0.0);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 127, 1);
}

TEST_F(QXOgreInstancingTextures, AnySetOfCoordinatesIsRead) {
  // The last sets share their places with what instances bring.
  QXTexture* const pTexture = MakeTexture(2, 1, PF_A8R8G8B8, {0, 0, 255, 255, 0, 255, 0, 255});
  for (unsigned int nSet = 0; nSet < 8; ++nSet) {
    SCOPED_TRACE(nSet);
    auto const pMesh = MakeSmall(nSet);
    AddTexCoords(*pMesh, (nSet + 1) % 8, {0.9F, 0, 0.9F, 0, 0.9F, 0, 0.9F, 0});
    m_pGraphics3D->SetTextureCoordSet(0, nSet);
    AddTexturedRange(*pMesh, pTexture);
    m_pManager->SetMesh(m_pTrees, pMesh.get());
    m_pManager->RemovePlacements(m_pTrees, 0, 1);
    Add(0.0, 0.0);
    QXPicture const picture = Frame();
    EXPECT_EQ(picture.At(28, 32), RED_PIXEL);
    EXPECT_EQ(picture.At(36, 32), GREEN_PIXEL);
    // Another set of the same mesh.
    m_pGraphics3D->SetTextureCoordSet(0, (nSet + 1) % 8);
    EXPECT_EQ(Frame().At(28, 32), GREEN_PIXEL);
  }
}

TEST_F(QXOgreInstancingTextures, ThoseOfASharedMeshComeAndGoWithItsDrawable) {
  auto pMesh = MakeSmall();
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  QXROInstancePtr const pShared(new QXRenderObjectInstance(pMesh.release(), m_pGraphics3D.get()));
  m_pManager->SetSharedMesh(m_pTrees, pShared);
  Add(0.5, 0.0);
  EXPECT_EQ(Frame().At(48, 32), (QXPixel{255, 255, 255, 255}));
  QXTexture* const pTexture = MakePlain(255, 0, 0);
  pShared->GetRenderOperation3D()->SetTexture(0, pTexture);
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
  pShared->GetRenderOperation3D()->SetTexture(0, nullptr);
  EXPECT_EQ(Frame().At(48, 32), (QXPixel{255, 255, 255, 255}));
}

class QXOgreInstancingWeather : public QXOgreInstancingScenery {
protected:
  void SetUp() override {
    QXOgreInstancingScenery::SetUp();
    m_pMesh = MakeRoof();
    m_arrPlacements = MakePlacements(40, 31, QXVector3d::ZERO);
    DrawEach(*m_pMesh, m_arrPlacements);
  }
  /// Instances in place of the drawables look the same.
  void ExpectSameAsDrawables() {
    QXPicture const expected = Frame();
    EXPECT_GT(CountDrawn(expected), 500);
    DeleteDrawables();
    m_pManager->SetMesh(m_pTrees, m_pMesh.get());
    m_pManager->AddPlacements(m_pTrees, m_arrPlacements.data(), 40);
    ExpectSame(Frame(), expected);
    // And what they look like is not what they look like without.
    m_pGraphics3D->SetFog(L"3D", QXFog());
    m_pGraphics3D->DestroyLight(L"lamp");
    EXPECT_NE(Frame().GetBytes(), expected.GetBytes());
  }

  std::unique_ptr<QXRenderOperationMultiIndex> m_pMesh;
  std::vector<QXMatrix4d> m_arrPlacements;
};

TEST_F(QXOgreInstancingWeather, LightsOfTheSceneShineOnInstances) {
  QXLight light;
  light.SetType(LIGHT_POINT);
  light.SetPosition(QXVector3d(0.3, 0.4, 3.0));
  light.SetAmbientColour(QXColorValue3D(0.1, 0.1, 0.1, 1.0));
  light.SetDiffuseColour(QXColorValue3D(1.0, 0.6, 0.2, 1.0));
  ASSERT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"3D"), 1);
  ASSERT_EQ(m_pGraphics3D->SetLight(L"lamp", light), 1);
  ExpectSameAsDrawables();
}

TEST_F(QXOgreInstancingWeather, FogCoversInstances) {
  QXFog fog;
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogColor(QXColorValue3D(0.2, 0.9, 0.4, 1.0));
  fog.SetFogStart(5.0);
  fog.SetFogEnd(15.0);
  m_pGraphics3D->SetFog(L"3D", fog);
  ExpectSameAsDrawables();
}

}  // namespace QXC
