// Instances with everything that drawables have beside colours: textures, lamps, fog.
#include <cmath>

#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

class QXOgreInstancingLook : public QXOgreTexturing {
protected:
  /// A square with coordinates in so many sets, the last of which turns its texture around.
  std::unique_ptr<QXRenderOperationMultiIndex> MakeTile(unsigned int nSets) {
    auto pMesh = MakeTexturedMesh(1.0F, -0.3F, -0.3F, 0.3F, 0.3F);
    QXTexturePackage* const pPackage = AddTexturedRange(*pMesh, MakeTexture(2, 2, PF_A8R8G8B8, FIRST));
    pPackage->m_bFlag = 1;
    for (unsigned int nSet = 1; nSet < nSets; ++nSet)
      AddTexCoords(*pMesh, nSet, {0.0F, 1.0F, 1.0F, 1.0F, 1.0F, 0.0F, 0.0F, 0.0F});
    AddTexCoords(*pMesh, 7, {1.0F, 0.0F, 0.0F, 0.0F, 0.0F, 1.0F, 1.0F, 1.0F});
    pPackage->m_pTextures[7] = MakeTexture(2, 2, PF_A8R8G8B8, SECOND);
    return pMesh;
  }
  std::vector<QXMatrix4d> MakePlaces() const {
    std::vector<QXMatrix4d> arrPlaces;
    for (int i = 0; i < 9; ++i) {
      QXMatrix4d mat;
      mat[0][0] = std::cos(0.1 * i);
      mat[0][2] = std::sin(0.1 * i);
      mat.SetTrans(QXVector3d(-0.65 + 0.65 * (i % 3), -0.65 + 0.65 * (i / 3), 0.5 * i - 2.0));
      arrPlaces.push_back(mat);
    }
    return arrPlaces;
  }
  /// The picture of one drawable a place, and then that of instances.
  void ExpectSame(QXRenderOperationMultiIndex& mesh, int nLeastColors) {
    std::vector<QXMatrix4d> const arrPlaces = MakePlaces();
    for (QXMatrix4d const& mat : arrPlaces) Draw(mesh)->SetModelMatrix(mat);
    QXPicture const expected = Frame();
    for (QXRenderOperation3D* const pOperation : m_arrOperations) delete pOperation;
    m_arrOperations.clear();
    QXHwInstancingManager& manager = *m_pGraphics3D->GetHwInstancingManager();
    QXInstancing* const pTiles = manager.CreateInstancing(L"tiles", L"3D");
    ASSERT_EQ(manager.SetMesh(pTiles, &mesh), 1);
    manager.AddPlacements(pTiles, arrPlaces.data(), 9);
    QXPicture const picture = Frame();
    manager.DestroyInstancing(pTiles);
    int nDifferent = 0;
    std::vector<int> arrReds(256, 0);
    for (unsigned int y = 0; y < SIZE; ++y) {
      for (unsigned int x = 0; x < SIZE; ++x) {
        QXPixel const a = picture.At(x, y);
        QXPixel const b = expected.At(x, y);
        bool const bSame = std::abs(a.r - b.r) <= 1 && std::abs(a.g - b.g) <= 1 && std::abs(a.b - b.b) <= 1;
        nDifferent += bSame ? 0 : 1;
        arrReds[static_cast<std::size_t>(b.r)] = 1;
      }
    }
    EXPECT_LE(nDifferent, 4);
    int nColors = 0;
    for (int const nRed : arrReds) nColors += nRed;
    EXPECT_GE(nColors, nLeastColors) << "there is more to see than one colour";
  }

  std::vector<unsigned char> const FIRST{255, 255, 255, 255, 0, 128, 255, 255, 128, 255, 64, 255, 255, 64, 200, 255};
  std::vector<unsigned char> const SECOND{
      255, 255, 128, 255, 255, 128, 255, 255, 64, 255, 255, 255, 255, 255, 192, 255};
};

TEST_F(QXOgreInstancingLook, TexturesReadTheSetsOfTheirUnits) {
  ExpectSame(*MakeTile(1), 4);
}

TEST_F(QXOgreInstancingLook, SetsThatNoTextureReadsTakeNoPlace) {
  ExpectSame(*MakeTile(7), 4);
}

TEST_F(QXOgreInstancingLook, LampsAndFogAreThoseOfTheScene) {
  QXLight lamp;
  lamp.SetType(LIGHT_POINT);
  lamp.SetPosition(QXVector3d(0.2, -0.3, 3.0));
  lamp.SetAttenuation(100.0, 1.0, 0.0, 0.1);
  ASSERT_EQ(m_pGraphics3D->CreateLight(L"lamp", L"3D"), 1);
  ASSERT_EQ(m_pGraphics3D->SetLight(L"lamp", lamp), 1);
  QXFog fog;
  fog.SetFogMode(FOG_LINEAR);
  fog.SetFogStart(5.0);
  fog.SetFogEnd(20.0);
  fog.SetFogColor(QXColorValue3D(0.9, 0.1, 0.3, 1.0));
  m_pGraphics3D->SetFog(L"3D", fog);
  ExpectSame(*MakeTile(1), 30);
}

}  // namespace QXC
