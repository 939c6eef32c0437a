#include <limits>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationSet.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include "../QXBareTexture.h"
#include "QXTestGeometry.h"

namespace QXC {
namespace {

class QXNullRenderOperation3DTest : public testing::Test {
protected:
  QXNullRenderOperation3DTest() { m_Graphics.Initialize(QdcUnicodeString()); }

  std::unique_ptr<QXNullRenderOperation3D> Make(unsigned char bAttach = 1) {
    QXRenderOperation3D* const pDrawable =
        m_Graphics.GetRenderOperationManager()->CreateRenderOperation3D(m_Graphics.GetSceneName(0), bAttach);
    return std::unique_ptr<QXNullRenderOperation3D>(dynamic_cast<QXNullRenderOperation3D*>(pDrawable));
  }

  QXNullGraphics3D m_Graphics;
};

QXVector3d const Down(0.0, 0.0, -1.0);

TEST_F(QXNullRenderOperation3DTest, StartsAsTheInterfaceTells) {
  auto const pDrawable = Make();
  EXPECT_TRUE(pDrawable->GetName().IsEmpty());
  EXPECT_TRUE(pDrawable->GetBoundingBox().IsNULL());
  EXPECT_TRUE(pDrawable->GetWorldBoundingBox().IsNULL());
  EXPECT_TRUE(pDrawable->GetModelMatrix() == QXMatrix4d::IDENTITY);
  EXPECT_EQ(pDrawable->IsVisible(), 1);
  EXPECT_EQ(pDrawable->GetColor(), QXColorValue3D::White);
  EXPECT_EQ(pDrawable->GetOpacity(), 1.0);
  EXPECT_EQ(pDrawable->GetSelectionID(), 0u);
  EXPECT_EQ(pDrawable->IsSelected(), 0);
  EXPECT_EQ(pDrawable->GetRenderPriority(), 0);
  EXPECT_EQ(pDrawable->GetVertexCount(), 0u);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 0u);
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 0u);
  EXPECT_EQ(pDrawable->GetDeviceMemory(), 0u);
  EXPECT_EQ(pDrawable->GetSkeletonAnimation(), nullptr);
}

TEST_F(QXNullRenderOperation3DTest, KnowsTheProgramsOfLabelsAndNoOthers) {
  auto const pDrawable = Make();
  EXPECT_EQ(pDrawable->SetShaderPrograms(LABEL_VERTEX_PROGRAM, LABEL_FRAGMENT_PROGRAM), 1);
  EXPECT_EQ(pDrawable->SetShaderPrograms(L"", L""), 1);
  EXPECT_EQ(pDrawable->SetShaderPrograms(LABEL_VERTEX_PROGRAM, L""), 0);
  EXPECT_EQ(pDrawable->SetShaderPrograms(L"", LABEL_FRAGMENT_PROGRAM), 0);
  EXPECT_EQ(pDrawable->SetShaderPrograms(LABEL_FRAGMENT_PROGRAM, LABEL_VERTEX_PROGRAM), 0);
}

TEST_F(QXNullRenderOperation3DTest, KeepsItsState) {
  auto const pDrawable = Make();
  pDrawable->SetName(L"house");
  pDrawable->SetVisible(0);
  pDrawable->SetColor(QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  pDrawable->SetOpacity(0.25);
  pDrawable->SetSelectionID(77);
  pDrawable->SetSelected(1);
  pDrawable->SetRenderPriority(-3);
  EXPECT_TRUE(pDrawable->GetName() == L"house");
  EXPECT_EQ(pDrawable->IsVisible(), 0);
  EXPECT_EQ(pDrawable->GetColor(), QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  EXPECT_EQ(pDrawable->GetOpacity(), 0.25);
  EXPECT_EQ(pDrawable->GetSelectionID(), 77u);
  EXPECT_EQ(pDrawable->IsSelected(), 1);
  EXPECT_EQ(pDrawable->GetRenderPriority(), -3);
}

TEST_F(QXNullRenderOperation3DTest, CopiesTheOperationSoThatItMayBeDestroyed) {
  auto const pDrawable = Make();
  {
    auto const pOperation = MakeSquare();
    QXMatrix4d matModel;
    matModel.SetTrans(QXVector3d(10.0, 0.0, 5.0));
    pOperation->SetMatrix(matModel);
    pOperation->m_Color = QXColorValue3D(0.5, 1.0, 1.0, 1.0);
    pOperation->GetIndexPackageArray()[1]->m_Color = QXColorValue3D(0.0, 1.0, 0.0, 1.0);
    pDrawable->SetRenderOperationMultiIndex(pOperation.get());
  }
  EXPECT_EQ(pDrawable->GetVertexCount(), 4u);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 2u);
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 2u);
  EXPECT_EQ(pDrawable->GetColor(), QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  EXPECT_EQ(pDrawable->GetGeometry().m_arrColors, std::vector<unsigned int>(4, 0x80402010u));
  EXPECT_EQ(pDrawable->GetGeometry().m_arrRanges[1].m_arrIndices, (std::vector<unsigned int>{0, 2, 3}));
  EXPECT_EQ(pDrawable->GetGeometry().m_arrRanges[1].m_Color, QXColorValue3D(0.0, 1.0, 0.0, 1.0));
  EXPECT_TRUE(pDrawable->GetBoundingBox().GetMin() == QXVector3d(-1.0, -1.0, 0.0));
  EXPECT_TRUE(pDrawable->GetWorldBoundingBox().GetMin() == QXVector3d(9.0, -1.0, 5.0));
  EXPECT_TRUE(pDrawable->GetWorldBoundingBox().GetMax() == QXVector3d(11.0, 1.0, 5.0));
  EXPECT_EQ(pDrawable->GetDeviceMemory(), 12u * 4 + 4 * 4 + 6 * 4);
}

TEST_F(QXNullRenderOperation3DTest, BrokenOperationsGiveLessGeometry) {
  auto const pDrawable = Make();
  auto pOperation = MakeSquare();
  pOperation->m_pVertexBlock->m_nPositionOffset = 2;  // the last of three floats would lie outside the vertex
  pOperation->m_pVertexBlock->m_nColorOffset = 4;
  pOperation->GetIndexPackageArray()[0]->m_nIndexType = 7;
  pDrawable->SetRenderOperationMultiIndex(pOperation.get());
  pOperation->GetIndexPackageArray()[0]->m_nIndexType = 0;
  EXPECT_EQ(pDrawable->GetVertexCount(), 0u);
  EXPECT_TRUE(pDrawable->GetBoundingBox().IsNULL());
  EXPECT_EQ(pDrawable->GetTriangleCount(), 1u);
  double dDistance = 0.0;
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(0.0, 0.0, 5.0), Down, dDistance), 0) << "indices past the vertices";
  QXRenderOperationMultiIndex empty;
  pDrawable->SetRenderOperationMultiIndex(&empty);
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 0u);
  pDrawable->SetRenderOperationMultiIndex(nullptr);
  EXPECT_EQ(pDrawable->GetVertexCount(), 0u);
}

TEST_F(QXNullRenderOperation3DTest, BoundsOfTheHostStayWhenPositionsChange) {
  auto const pDrawable = Make();
  PlaceSquare(*pDrawable, 0.0, 0.0, 0.0);
  float const arrPosition[] = {8.0F, 0.0F, 0.0F};
  EXPECT_EQ(pDrawable->UpdatePositions(3, 1, arrPosition), 1);
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMax().x, 8.0);
  EXPECT_EQ(pDrawable->UpdatePositions(4, 1, arrPosition), 0);
  EXPECT_EQ(pDrawable->UpdatePositions(0xFFFFFFFFu, 2, arrPosition), 0);
  EXPECT_EQ(pDrawable->UpdatePositions(0, 1, nullptr), 0);
  pDrawable->SetBoundingBox(QXBoundingBox(QXVector3d(0.0, 0.0, 0.0), QXVector3d(1.0, 1.0, 1.0)));
  EXPECT_EQ(pDrawable->UpdatePositions(0, 1, arrPosition), 1);
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMax().x, 1.0);
}

TEST_F(QXNullRenderOperation3DTest, ColoursAreOverwrittenInPlace) {
  auto const pDrawable = Make();
  PlaceSquare(*pDrawable, 0.0, 0.0, 0.0);
  unsigned int const arrColors[] = {1, 2};
  EXPECT_EQ(pDrawable->UpdateColors(2, 2, arrColors), 1);
  EXPECT_EQ(pDrawable->GetGeometry().m_arrColors, (std::vector<unsigned int>{0x80402010u, 0x80402010u, 1, 2}));
  EXPECT_EQ(pDrawable->UpdateColors(3, 2, arrColors), 0);
  pDrawable->ClearGeometry();
  EXPECT_EQ(pDrawable->UpdateColors(0, 1, arrColors), 0);
  EXPECT_TRUE(pDrawable->GetBoundingBox().IsNULL());
}

TEST_F(QXNullRenderOperation3DTest, TrianglesAreCountedByHowTheRangeJoinsThem) {
  struct Case {
    int m_eType;
    unsigned int m_nIndices;
    unsigned int m_nExpected;
  };
  for (Case const& entry : {Case{QX_OPERATION_TRIANGLE_LIST, 7, 2}, Case{QX_OPERATION_TRIANGLE_STRIP, 5, 3},
           Case{QX_OPERATION_TRIANGLE_STRIP, 2, 0}, Case{QX_OPERATION_TRIANGLE_FAN, 5, 3},
           Case{QX_OPERATION_LINE_LIST, 6, 0}, Case{QX_OPERATION_POINT_LIST, 6, 0}, Case{99, 6, 0}}) {
    QXNullIndexRange range;
    range.m_eOperationType = entry.m_eType;
    range.m_arrIndices.resize(entry.m_nIndices);
    EXPECT_EQ(range.GetTriangleCount(), entry.m_nExpected) << entry.m_eType << " " << entry.m_nIndices;
    EXPECT_EQ(range.IsDrawn(), 1);
  }
}

TEST_F(QXNullRenderOperation3DTest, HiddenRangesAreNotDrawn) {
  auto const pDrawable = Make();
  PlaceSquare(*pDrawable, 0.0, 0.0, 0.0);
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(), 2u);
  pDrawable->SetIndexRangeVisible(0, 0);
  pDrawable->SetIndexRangeVisible(2, 0);
  EXPECT_EQ(pDrawable->GetDrawnRangeCount(), 1u);
  EXPECT_EQ(pDrawable->GetDrawnTriangleCount(), 1u);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 2u);
  pDrawable->SetIndexRangeColor(1, QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  pDrawable->SetIndexRangeColor(2, QXColorValue3D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(pDrawable->GetGeometry().m_arrRanges[1].m_Color, QXColorValue3D(0.0, 0.0, 1.0, 1.0));
}

TEST_F(QXNullRenderOperation3DTest, RaysHitTheNearestVisibleTriangleFromEitherSide) {
  auto const pDrawable = Make();
  PlaceSquare(*pDrawable, 10.0, 0.0, 2.0);
  double dDistance = -1.0;
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(10.5, 0.0, 5.0), Down, dDistance), 1);
  EXPECT_DOUBLE_EQ(dDistance, 3.0);
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(9.5, 0.0, -2.0), QXVector3d(0.0, 0.0, 2.0), dDistance), 1);
  EXPECT_DOUBLE_EQ(dDistance, 2.0);
  dDistance = -1.0;
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(12.0, 0.0, 5.0), Down, dDistance), 0);
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(10.0, 0.0, -5.0), Down, dDistance), 0) << "behind the origin of the ray";
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(10.0, 0.0, 5.0), QXVector3d(1.0, 0.0, 0.0), dDistance), 0) << "parallel";
  EXPECT_EQ(dDistance, -1.0);
  pDrawable->SetIndexRangeVisible(0, 0);
  EXPECT_EQ(pDrawable->Intersect(QXVector3d(10.5, 0.0, 5.0), Down, dDistance), 0);
}

TEST_F(QXNullRenderOperation3DTest, StripsAndFansAreHit) {
  for (int const eType : {QX_OPERATION_TRIANGLE_STRIP, QX_OPERATION_TRIANGLE_FAN}) {
    QXNullGeometry geometry;
    geometry.m_arrPositions = eType == QX_OPERATION_TRIANGLE_FAN
                                  ? std::vector<float>{0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0}
                                  : std::vector<float>{0, 0, 0, 2, 0, 0, 0, 2, 0, 2, 2, 0};
    geometry.m_arrRanges.resize(1);
    geometry.m_arrRanges[0].m_eOperationType = eType;
    geometry.m_arrRanges[0].m_arrIndices = {0, 1, 2, 3};
    double dDistance = 0.0;
    for (auto const& [dX, dY] : {std::pair{0.5, 0.2}, std::pair{1.5, 1.8}, std::pair{0.2, 1.5}}) {
      EXPECT_EQ(geometry.Intersect(QXMatrix4d(), QXVector3d(dX, dY, 1.0), Down, dDistance), 1) << eType << " " << dX;
    }
    EXPECT_EQ(geometry.Intersect(QXMatrix4d(), QXVector3d(2.5, 1.0, 1.0), Down, dDistance), 0);
  }
}

TEST_F(QXNullRenderOperation3DTest, TakesSelfContainedOperations) {
  QXRenderOperation operation;
  operation.SetVertexNum(3);
  operation.SetVertexValue(0, 0.0, 0.0, 0.0);
  operation.SetVertexValue(1, 4.0, 0.0, 0.0);
  operation.SetVertexValue(2, 0.0, 4.0, 0.0);
  operation.SetIndexNum(3);
  for (unsigned int i = 0; i < 3; ++i) {
    operation.SetIndexValue(i, static_cast<unsigned short>(i));
  }
  auto const pDrawable = Make();
  pDrawable->SetRenderOperation(&operation);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 1u);
  QXRenderOperationSet set;
  set.m_arrRenderOperations.Add(&operation);
  set.m_arrRenderOperations.Add(nullptr);
  set.m_arrRenderOperations.Add(&operation);
  pDrawable->SetRenderOperationSet(set);
  EXPECT_EQ(pDrawable->GetVertexCount(), 6u);
  EXPECT_EQ(pDrawable->GetIndexRangeCount(), 2u);
  EXPECT_EQ(pDrawable->GetGeometry().m_arrRanges[1].m_arrIndices, (std::vector<unsigned int>{3, 4, 5}));
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMax().x, 4.0);
  pDrawable->SetRenderOperation(nullptr);
  EXPECT_EQ(pDrawable->GetVertexCount(), 0u);
}

TEST_F(QXNullRenderOperation3DTest, ReferencesOnTexturesAreGivenBack) {
  QXBareTexture package;
  QXBareTexture unit;
  {
    auto const pDrawable = Make();
    QXTexturePackage textures;  // lives longer than the operation that lists it
    textures.m_bOwned = 0;
    auto const pOperation = MakeSquare();
    textures.m_pTextures[2] = &package;
    auto* const pIndex = new QXVertexIndexPackage;
    pOperation->SetAt(pIndex, &textures);
    pDrawable->SetRenderOperationMultiIndex(pOperation.get());
    EXPECT_EQ(package.GetRef(), 1);
    pDrawable->SetRenderOperationMultiIndex(pOperation.get());
    EXPECT_EQ(package.GetRef(), 1);
    pDrawable->ClearGeometry();
    EXPECT_EQ(package.GetRef(), 0);
    pDrawable->SetRenderOperationMultiIndex(pOperation.get());
    pDrawable->SetTexture(0, &unit);
    pDrawable->SetTexture(0, &unit);
    pDrawable->SetTexture(1, &unit);
    EXPECT_EQ(unit.GetRef(), 2);
    pDrawable->SetTexture(1, nullptr);
    EXPECT_EQ(unit.GetRef(), 1);
  }
  EXPECT_EQ(package.GetRef(), 0);
  EXPECT_EQ(unit.GetRef(), 0);
}

TEST_F(QXNullRenderOperation3DTest, DistanceAndNodeDecideWhetherItIsDrawn) {
  auto const pDrawable = Make();
  PlaceSquare(*pDrawable, 0.0, 0.0, 0.0);
  QXBoundingBox const box = pDrawable->GetWorldBoundingBox();
  QXVector3d const eye(0.0, 0.0, 10.0);
  EXPECT_EQ(pDrawable->IsDrawnFrom(eye, box), 1);
  pDrawable->SetVisibleDistance(0.0, 10.0);
  EXPECT_EQ(pDrawable->IsDrawnFrom(eye, box), 1);
  EXPECT_EQ(pDrawable->IsDrawnFrom(QXVector3d(0.0, 0.0, 10.5), box), 0);
  pDrawable->SetVisibleDistance(11.0, 0.0);
  EXPECT_EQ(pDrawable->IsDrawnFrom(eye, box), 0);
  EXPECT_EQ(pDrawable->IsDrawnFrom(QXVector3d(0.0, 0.0, 1e6), box), 1);
  pDrawable->SetVisibleDistance(0.0, 0.0);
  pDrawable->SetVisible(0);
  EXPECT_EQ(pDrawable->IsDrawnFrom(eye, box), 0);
}

}  // namespace
}  // namespace QXC
