// Merged geometry stands where its meshes did, to the pixel, also at the far side of the Earth.
#include <cmath>
#include <cstdlib>
#include <random>

#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr unsigned int WIDTH = 256;
/// A place on the ground in Earth-centred coordinates.
QXVector3d const FAR_AWAY(4026831.27, 306991.83, 4919499.41);

QXMatrix4d Placed(QXQuaternion4d const& orientation, QXVector3d const& vecPosition) {
  QXMatrix4d mat;
  QXVector3d axes[3];
  orientation.ToAxes(axes);
  for (int i = 0; i < 3; ++i) {
    mat[i][0] = axes[i].x;
    mat[i][1] = axes[i].y;
    mat[i][2] = axes[i].z;
  }
  mat.SetTrans(vecPosition);
  return mat;
}

/// Pixels that differ by more than rounding.
unsigned int CountDifferent(QXPicture const& a, QXPicture const& b, int nTolerance = 2) {
  unsigned int nCount = 0;
  for (unsigned int y = 0; y < WIDTH; ++y) {
    for (unsigned int x = 0; x < WIDTH; ++x) {
      QXPixel const p = a.At(x, y);
      QXPixel const q = b.At(x, y);
      int const nMost = std::max({std::abs(p.r - q.r), std::abs(p.g - q.g), std::abs(p.b - q.b)});
      nCount += nMost > nTolerance ? 1 : 0;
    }
  }
  return nCount;
}

/// Rectangles with pictures on them, placed at random around the zero of a frame, once as meshes of their own and once
/// merged.
class QXOgreBucketPlace : public QXOgreBucketing {
protected:
  static constexpr unsigned int MESHES = 300;

  void SetUp() override {
    QXOgreBucketing::SetUp();
    for (wchar_t const* const szName : {L"brick", L"stone", L"plain"}) {
      QXTexture* const pTexture = NameTexture(szName, Stripes(szName[0]));
      pTexture->RendererOperation1(2, 2, 0);
      AddPass(m_mapPasses, szName, {szName});
    }
    m_pWide = MakeTarget(L"wide", WIDTH, WIDTH);
    m_pWide->SetSunLightEnable(1);
    m_pWide->SetSunPosition({300.0, -200.0, 1000.0});
    m_pEye = m_pGraphics3D->CreateCamera(L"eye", L"3D");
    QXMatrix4d matProjection;
    m_pGraphics3D->MakeProjectionMatrix(PI / 3.0, 1.0, 1.0, 200.0, matProjection);
    m_pEye->SetProjectionMatrix(matProjection);
    AddViewport(*m_pWide, *m_pEye, 0, 0.0, 0.0, 1.0, 1.0);
  }
  void TearDown() override {
    QXOgreBucketing::TearDown();
    for (auto const& [strName, pPass] : m_mapPasses) delete pPass;
  }
  static std::vector<unsigned char> Stripes(wchar_t cSeed) {
    std::vector<unsigned char> arrPixels;
    for (int i = 0; i < 16; ++i)
      for (int const n : {40 * (i % 5), 255 - 15 * i, static_cast<int>(cSeed) + 8 * i, 255})
        arrPixels.push_back(static_cast<unsigned char>(n));
    return arrPixels;
  }
  /// The same meshes for any place.
  void MakeMeshes(QXVector3d const& vecPlace) {
    std::mt19937 random(20260701);
    auto const number = [&](double dMin, double dMax) {
      return dMin + (dMax - dMin) * (static_cast<double>(random()) / 4294967295.0);
    };
    wchar_t const* const szNames[3] = {L"brick", L"stone", L"plain"};
    m_arrMeshes.clear();
    for (unsigned int i = 0; i < MESHES; ++i) {
      QXStaticMesh& mesh = *m_arrMeshes.emplace_back(std::make_unique<QXStaticMesh>());
      auto const fSize = static_cast<float>(number(0.5, 3.0));
      SetPositions(mesh.m_Vertices, Corners(-fSize, -fSize, fSize, fSize));
      SetNormals(mesh.m_Vertices, {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
      SetTexCoords(mesh.m_Vertices, 0, {0, 1, 0, 1, 1, 1, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1}, 4);
      mesh.m_arrIndices.Add(NewIndices(Rectangles(0, 0), szNames[random() % 3]));
      QXQuaternion4d turn;
      turn.FromAngleAxis(number(0.0, 2.0 * PI), QXVector3d(number(-1, 1), number(-1, 1), number(0.1, 1)));
      turn.Normalize();
      // Apart from each other in depth, so that none cuts through another and rounding decides nothing.
      double const dHeight = -0.2 * i;
      m_arrHeights.push_back(dHeight);
      mesh.m_matModel = Placed(turn, vecPlace + QXVector3d(number(-20, 20), number(-20, 20), dHeight));
    }
  }
  std::vector<QXRenderOperation3D*> ShowMeshes() {
    std::vector<QXRenderOperation3D*> arrShown;
    for (auto const& pMesh : m_arrMeshes) {
      std::vector<QXCorner> arrCorners;
      float const* const p = pMesh->m_Vertices.m_pVertices;
      for (std::size_t i = 0; i < 4; ++i)
        arrCorners.push_back({p[3 * i], p[3 * i + 1], p[3 * i + 2], QXVector3d::UNIT_Z, 0xFFFFFFFF});
      auto const pOperation = MakeMesh(arrCorners, true);
      AddTexCoords(*pOperation, 0, {0, 1, 1, 1, 1, 0, 0, 0});
      AddTexturedRange(*pOperation, m_pTextures->GetTexture(pMesh->m_arrIndices[0]->m_arrPassNames[0], 0));
      arrShown.push_back(Draw(*pOperation));
      arrShown.back()->SetModelMatrix(pMesh->m_matModel);
    }
    return arrShown;
  }
  /// Merged relative to the place.
  QXRenderOperation3D* ShowMerged(QXVector3d const& vecPlace, bool bFold) {
    QXStaticGeometry geometry;
    for (auto const& pMesh : m_arrMeshes)
      geometry.AddVertexDataAndIndexPackage(
          &pMesh->m_Vertices, pMesh->m_arrIndices, m_mapPasses, pMesh->m_matModel, nullptr, -1);
    if (bFold) geometry.AssginMutiTexture(0, 0);
    QXMatrix4d matBase;
    matBase.SetTrans(vecPlace);
    geometry.AssignStaticGeometry(matBase, 0);
    geometry.SetLocalViewMatrix(matBase);
    QXRenderOperation3D* const pOperation = Show(*geometry.m_vecBuckets16.at(0));
    pOperation->SetModelMatrix(geometry.GetLocalViewMatrix());
    return pOperation;
  }
  QXPicture WideFrame() { return Frame(m_pWide); }

  std::map<QdcUnicodeString, QXPass*> m_mapPasses;
  std::vector<std::unique_ptr<QXStaticMesh>> m_arrMeshes;
  std::vector<double> m_arrHeights;
  QXRenderTarget* m_pWide = nullptr;
  QXCamera* m_pEye = nullptr;
};

}  // namespace

TEST_F(QXOgreBucketPlace, TheMergedMeshesLookAsTheyDidAloneInFewOperations) {
  MakeMeshes(FAR_AWAY);
  m_pEye->SetPosition(FAR_AWAY.x, FAR_AWAY.y, FAR_AWAY.z + 30.0);
  m_pTarget->RemoveAllViewports();
  std::vector<QXRenderOperation3D*> const arrAlone = ShowMeshes();
  QXPicture const alone = WideFrame();
  unsigned int const nAlone = Operations();
  EXPECT_GT(nAlone, MESHES / 2);
  for (QXRenderOperation3D* const pOperation : arrAlone) pOperation->SetVisible(0);
  QXPicture const nothing = WideFrame();
  EXPECT_GT(CountDifferent(alone, nothing), WIDTH * WIDTH / 3);
  for (bool const bFold : {false, true}) {
    QXRenderOperation3D* const pMerged = ShowMerged(FAR_AWAY, bFold);
    QXPicture const merged = WideFrame();
    // Along edges rounding may decide for the other side.
    EXPECT_LE(CountDifferent(alone, merged), WIDTH * WIDTH / 500) << bFold;
    EXPECT_EQ(Operations(), bFold ? 1U : 3U);
    pMerged->SetVisible(0);
  }
}

// Floats at this distance from the centre of the Earth are half a metre apart.
TEST_F(QXOgreBucketPlace, AMillimetreMovesThePictureByAMillimetreAndNothingElse) {
  m_pTarget->RemoveAllViewports();
  // A pixel is half a millimetre.
  QXMatrix4d const matProjection = QXMathEngine::ComputeOrthoMatrix(-0.064, 0.064, -0.064, 0.064, 1.0, 200.0);
  m_pEye->SetProjectionType(PROJECTION_ORTHOGRAPHIC);
  m_pEye->SetProjectionMatrix(matProjection);
  auto const pictures = [&](QXVector3d const& vecPlace, bool bOrigin) {
    MakeMeshes(vecPlace);
    // The sun stands over the place, and not over the centre of the Earth.
    m_pWide->SetSunLightEnable(0);
    // Of a mesh that lies in sight, the edge.
    QXMatrix4d const& mat = m_arrMeshes[0]->m_matModel;
    float const* const p = m_arrMeshes[0]->m_Vertices.m_pVertices;
    QXVector3d const vecCorner = QXVector3d(p[0], p[1], p[2]).MultiplyMatrix(mat) - vecPlace;
    m_pGraphics3D->SetRelativeOrigin(bOrigin ? vecPlace : QXVector3d::ZERO);
    QXRenderOperation3D* const pMerged = ShowMerged(vecPlace, true);
    std::vector<QXPicture> arrPictures;
    for (int i = 0; i < 6; ++i) {
      QXVector3d const vecEye = vecPlace + vecCorner + QXVector3d(0.001 * i, 0.0, 50.0);
      m_pEye->SetPosition(vecEye.x, vecEye.y, vecEye.z);
      arrPictures.push_back(WideFrame());
    }
    pMerged->SetVisible(0);
    return arrPictures;
  };
  std::vector<QXPicture> const arrNear = pictures(QXVector3d::ZERO, false);
  for (bool const bOrigin : {false, true}) {
    std::vector<QXPicture> const arrFar = pictures(FAR_AWAY, bOrigin);
    for (std::size_t i = 0; i < arrNear.size(); ++i) {
      EXPECT_LE(CountDifferent(arrNear[i], arrFar[i], 4), 2 * WIDTH) << "after " << i << " mm";
      if (i == 0) continue;
      // Two pixels to the left.
      unsigned int nOff = 0;
      unsigned int nSame = 0;
      for (unsigned int y = 0; y < WIDTH; ++y) {
        for (unsigned int x = 2; x < WIDTH; ++x) {
          QXPixel const before = arrFar[i - 1].At(x, y);
          QXPixel const after = arrFar[i].At(x - 2, y);
          nOff += std::abs(before.g - after.g) > 4 ? 1 : 0;
          nSame += arrFar[i].At(x, y) == before ? 1 : 0;
        }
      }
      EXPECT_LE(nOff, 2 * WIDTH) << "after " << i << " mm";
      EXPECT_LT(nSame, WIDTH * (WIDTH - 2)) << "the picture stands still after " << i << " mm";
    }
  }
}

}  // namespace QXC
