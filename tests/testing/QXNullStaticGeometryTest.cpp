#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {
namespace {

/// A bucket of four vertices: two triangles on level 0, in a package each, and one on level 1.
class QXNullStaticGeometryTest : public testing::Test {
protected:
  QXNullStaticGeometryTest() {
    m_Graphics.Initialize(QdcUnicodeString());
    QXVertexDataPackage& package = *m_Bucket.m_pVertexPackage;
    package.SetVertexNum(4, 0);
    float const fNumbers[12] = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 2};
    std::copy(std::begin(fNumbers), std::end(fNumbers), package.m_pVertices);
    AddPackage(0, {0, 1, 2});
    AddPackage(0, {0, 2, 3});
    AddPackage(1, {0, 1, 3});
  }

  QXIndexPackage& AddPackage(int nLevel, std::vector<unsigned short> const& arrIndices) {
    auto pPackage = std::make_unique<QXIndexPackage>();
    pPackage->SetIndexNum(static_cast<int>(arrIndices.size()));
    std::copy(arrIndices.begin(), arrIndices.end(), pPackage->GetIndices16());
    m_Bucket.m_mapLevelIndices[nLevel].push_back(pPackage.release());
    return *m_Bucket.m_mapLevelIndices[nLevel].back();
  }
  std::unique_ptr<QXNullRenderOperation3D> Make(std::vector<double> const& arrDistances = {}) {
    QdcArray<double> arrLevelDistances;
    for (double const d : arrDistances) arrLevelDistances.Add(d);
    QXRenderOperation3D* const pDrawable = m_Graphics.GetRenderOperationManager()->CreateStaticGeometry3D(
        m_Graphics.GetSceneName(0), m_Bucket, arrLevelDistances);
    return std::unique_ptr<QXNullRenderOperation3D>(dynamic_cast<QXNullRenderOperation3D*>(pDrawable));
  }

  QXNullGraphics3D m_Graphics;
  QXStaticGeometryBucket m_Bucket;
};

}  // namespace

TEST_F(QXNullStaticGeometryTest, CopiesVerticesAndPackagesLevelByLevel) {
  m_Bucket.m_pVertexPackage->SetColorNum(4, 0);
  m_Bucket.m_pVertexPackage->m_pColors[3] = 0x12345678;
  auto const pDrawable = Make();
  ASSERT_NE(pDrawable, nullptr);
  EXPECT_NE(pDrawable->m_pScene, nullptr);
  EXPECT_EQ(pDrawable->GetVertexCount(), 4u);
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 3u);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 3u);
  QXNullGeometry const& geometry = pDrawable->GetGeometry();
  EXPECT_EQ(geometry.m_arrRanges[1].m_arrIndices, (std::vector<unsigned int>{0, 2, 3}));
  EXPECT_EQ(geometry.m_arrRanges[1].m_nLevel, 0);
  EXPECT_EQ(geometry.m_arrRanges[2].m_arrIndices, (std::vector<unsigned int>{0, 1, 3}));
  EXPECT_EQ(geometry.m_arrRanges[2].m_nLevel, 1);
  EXPECT_EQ(geometry.m_arrColors[3], 0x12345678u);
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMin(), QXVector3d(-1.0, -1.0, 0.0));
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMax(), QXVector3d(1.0, 1.0, 2.0));
}

TEST_F(QXNullStaticGeometryTest, PositionsOfTwoNumbersLieInThePlane) {
  m_Bucket.m_pVertexPackage->m_nVertexDim = 2;
  m_Bucket.m_pVertexPackage->SetVertexNum(4, 0);
  m_Bucket.m_pVertexPackage->m_pVertices[7] = 3.0F;
  EXPECT_EQ(Make()->GetGeometry().m_arrPositions, (std::vector<float>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0}));
}

TEST_F(QXNullStaticGeometryTest, LevelsAreCountedByTheirDistances) {
  auto const pWithout = Make();
  EXPECT_EQ(pWithout->GetDrawnRangeCount(5.0), 2u);
  EXPECT_EQ(pWithout->GetDrawnTriangleCount(5.0), 2u);
  auto const pDrawable = Make({2.0, 10.0});
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(1.9), 0u);
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(2.0), 2u);
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(10.0), 1u);
  EXPECT_EQ(pDrawable->GetDrawnTriangleCount(1e9), 1u);
  AddPackage(2, {0, 1, 2});
  AddPackage(-1, {0, 1, 2});
  AddPackage(std::numeric_limits<int>::max(), {0, 1, 2});
  EXPECT_EQ(Make({2.0, 10.0})->GetDrawnRangeCount(20.0), 1u) << "levels without a distance";
  EXPECT_EQ(Make({2.0, 10.0, 20.0, 30.0})->GetDrawnRangeCount(30.0), 0u);
}

TEST_F(QXNullStaticGeometryTest, CamerasTakeTheNearestDistanceToTheBounds) {
  auto const pDrawable = Make({0.0, 5.0});
  QXCamera* const pCamera = m_Graphics.CreateCamera(L"eye", m_Graphics.GetSceneName(0));
  pCamera->SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(-9.0, 9.0, -9.0, 9.0, -100.0, 100.0));
  QXViewport viewport(0, 0, 10, 10);
  auto const count = [&](double x, double z) {
    pCamera->SetPosition(x, 0.0, z);
    m_Graphics.BeginGeometryCount();
    pCamera->RenderScene(&viewport, 1);
    return m_Graphics.GetDrawOperationCount();
  };
  // The bounds end at z = 2 and at x = 1.
  EXPECT_EQ(count(0.0, 6.9), 2u);
  EXPECT_EQ(count(0.0, 7.0), 1u);
  EXPECT_EQ(count(0.0, -5.0), 1u);
  EXPECT_EQ(count(0.0, 1.0), 2u);
  EXPECT_EQ(count(4.0, 5.9), 2u);
  EXPECT_EQ(count(4.0, 6.1), 1u);
}

TEST_F(QXNullStaticGeometryTest, PackagesThatAreNotWholeAreEmptyRanges) {
  AddPackage(0, {0, 1, 4});
  AddPackage(0, {0, 1, 2}).m_nIndexNum = -3;
  AddPackage(0, {0, 1, 2}).m_nIndexType = 5;
  m_Bucket.m_mapLevelIndices[0].push_back(nullptr);
  auto const pDrawable = Make();
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 7u);
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(), 2u);
  m_Bucket.m_mapLevelIndices[0][4]->m_nIndexType = 0;
}

TEST_F(QXNullStaticGeometryTest, WithoutPositionsThereIsNothing) {
  QXVertexDataPackage* const pWhole = m_Bucket.m_pVertexPackage;
  QXVertexDataPackage counts;
  counts.m_nVertexNum = 4;
  QXVertexDataPackage noDimension;
  noDimension.m_nVertexDim = 0;
  noDimension.SetVertexNum(4, 0);
  for (QXVertexDataPackage* const pPackage : {static_cast<QXVertexDataPackage*>(nullptr), &counts, &noDimension}) {
    m_Bucket.m_pVertexPackage = pPackage;
    auto const pDrawable = Make({1.0});
    EXPECT_EQ(pDrawable->GetVertexCount(), 0u);
    EXPECT_EQ(pDrawable->GetIndexRangeCount(), 0u);
  }
  m_Bucket.m_pVertexPackage = pWhole;
}

TEST_F(QXNullStaticGeometryTest, OtherGeometryHasNoLevels) {
  auto const pDrawable = Make({1000.0});
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(), 0u);
  pDrawable->SetBucket(m_Bucket, QdcArray<double>(), nullptr);
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(), 2u);
  pDrawable->ClearGeometry();
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 0u);
}

TEST_F(QXNullStaticGeometryTest, TexturesOfThePassesAreCountedWhileItStands) {
  QXTexture* const pTexture = m_Graphics.GetTextureManager()->GetTexture(L"brick.png", 1);
  auto* const pPass = new QXPass;
  pPass->CreateTextureUnitState()->SetTextureName(L"brick.png");
  pPass->CreateTextureUnitState();
  pPass->CreateTextureUnitState()->SetTextureName(L"nowhere.png");
  m_Bucket.m_mapPasses[L"wall"] = pPass;
  m_Bucket.m_mapPasses[L"none"] = nullptr;
  auto pDrawable = Make();
  EXPECT_EQ(pTexture->GetRef(), 1);
  pDrawable->SetBucket(m_Bucket, QdcArray<double>(), m_Graphics.GetTextureManager());
  EXPECT_EQ(pTexture->GetRef(), 1);
  pDrawable.reset();
  EXPECT_EQ(pTexture->GetRef(), 0);
}

TEST_F(QXNullStaticGeometryTest, ASceneThatDoesNotExistMakesADrawableThatStandsInNone) {
  std::unique_ptr<QXRenderOperation3D> const pDrawable(
      m_Graphics.GetRenderOperationManager()->CreateStaticGeometry3D(L"nowhere", m_Bucket, QdcArray<double>()));
  ASSERT_NE(pDrawable, nullptr);
  EXPECT_EQ(pDrawable->GetVertexCount(), 4u);
  EXPECT_EQ(dynamic_cast<QXNullRenderOperation3D&>(*pDrawable).m_pScene, nullptr);
}

}  // namespace QXC
