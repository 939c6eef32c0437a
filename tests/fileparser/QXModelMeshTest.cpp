#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

#include <memory>

namespace QXC {
namespace {

TEST(QXModelMesh, FreshOneIsWhiteAndEmpty) {
  QXModelMesh const mesh;
  EXPECT_EQ(mesh.m_pVertexPackage, nullptr);
  EXPECT_EQ(mesh.m_bBaseColorSet, 0);
  EXPECT_EQ(mesh.m_BaseColor, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(mesh.m_EmissiveColor, QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  EXPECT_EQ(mesh.m_SpecularColor, QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  EXPECT_EQ(mesh.m_dShininess, 0.0);
  EXPECT_EQ(mesh.m_Bounds.IsNULL(), 1);
  EXPECT_EQ(mesh.GetTriangleCount(), 0u);
}

TEST(QXModelMesh, FreshOneHasNoPicture) {
  QXModelTexture const texture = QXModelMesh().m_Texture;
  EXPECT_EQ(texture.m_nImage, -1);
  EXPECT_EQ(texture.m_eWrapU, QX_WRAP_REPEAT);
  EXPECT_EQ(texture.m_eWrapV, QX_WRAP_REPEAT);
  EXPECT_EQ(texture.m_matTransform, QXMatrix4d::IDENTITY);
  EXPECT_EQ(texture.m_bReplacesColor, 0);
  EXPECT_EQ(texture.m_eAlpha, QX_ALPHA_AUTO);
  EXPECT_EQ(texture.m_dAlphaCutoff, 0.5);
}

TEST(QXModelMesh, CopyAndAssignmentBringThePictureAlong) {
  QXModelMesh mesh;
  mesh.m_Texture.m_nImage = 3;
  mesh.m_Texture.m_eWrapV = QX_WRAP_MIRROR;
  mesh.m_Texture.m_matTransform[0][0] = 2.0;
  mesh.m_Texture.m_bReplacesColor = 1;
  mesh.m_Texture.m_eAlpha = QX_ALPHA_MASK;
  mesh.m_Texture.m_dAlphaCutoff = 0.25;
  QXModelMesh const copy(mesh);
  QXModelMesh assigned;
  assigned = mesh;
  QXModelTexture const* const arrTextures[] = {&copy.m_Texture, &assigned.m_Texture};
  for (QXModelTexture const* p : arrTextures) {
    EXPECT_EQ(p->m_nImage, 3);
    EXPECT_EQ(p->m_eWrapV, QX_WRAP_MIRROR);
    EXPECT_EQ(p->m_matTransform[0][0], 2.0);
    EXPECT_EQ(p->m_bReplacesColor, 1);
    EXPECT_EQ(p->m_eAlpha, QX_ALPHA_MASK);
    EXPECT_EQ(p->m_dAlphaCutoff, 0.25);
  }
}

TEST(QXModelMesh, BoundsAreThoseOfThePositions) {
  std::unique_ptr<QXModelMesh> const pMesh(
      MakeMesh({1.0f, -2.0f, 3.0f, -1.0f, 5.0f, 0.0f, 0.0f, 0.0f, 9.0f}, {0, 1, 2}));
  EXPECT_EQ(pMesh->m_Bounds.GetMin(), QXVector3d(-1.0, -2.0, 0.0));
  EXPECT_EQ(pMesh->m_Bounds.GetMax(), QXVector3d(1.0, 5.0, 9.0));
}

TEST(QXModelMesh, BoundsWithoutPositionsAreNull) {
  QXModelMesh mesh;
  mesh.m_Bounds = QXBoundingBox(QXVector3d::ZERO, QXVector3d::UNIT_X);
  mesh.UpdateBounds();
  EXPECT_EQ(mesh.m_Bounds.IsNULL(), 1);
  mesh.m_pVertexPackage = new QXVertexDataPackage;
  mesh.m_Bounds = QXBoundingBox(QXVector3d::ZERO, QXVector3d::UNIT_X);
  mesh.UpdateBounds();
  EXPECT_EQ(mesh.m_Bounds.IsNULL(), 1);
}

TEST(QXModelMesh, CopyOwnsPackagesOfItsOwn) {
  std::unique_ptr<QXModelMesh> pMesh(MakeTriangle());
  pMesh->m_strName = L"wall";
  pMesh->m_strMaterialName = L"brick";
  pMesh->m_bBaseColorSet = 1;
  pMesh->m_BaseColor = QXColorValue3D(0.5, 0.25, 0.125, 1.0);
  pMesh->m_EmissiveColor = QXColorValue3D(0.1, 0.2, 0.3, 1.0);
  pMesh->m_SpecularColor = QXColorValue3D(0.6, 0.7, 0.8, 1.0);
  pMesh->m_dShininess = 16.0;
  auto* pWide = new QXIndexPackage;
  pWide->SetIndexNum32(3);
  pWide->GetIndices32()[1] = 2;
  pWide->m_bFlag = 1;
  pWide->m_arrPassNames.Add(L"pass");
  pMesh->m_arrIndexPackages.Add(pWide);

  QXModelMesh const copy(*pMesh);
  pMesh->m_pVertexPackage->m_pVertices[3] = 77.0f;
  pMesh->m_arrIndexPackages[0]->GetIndices16()[0] = 1;
  pMesh.reset();

  EXPECT_TRUE(copy.m_strName == L"wall");
  EXPECT_TRUE(copy.m_strMaterialName == L"brick");
  EXPECT_EQ(copy.m_bBaseColorSet, 1);
  EXPECT_EQ(copy.m_BaseColor, QXColorValue3D(0.5, 0.25, 0.125, 1.0));
  EXPECT_EQ(copy.m_EmissiveColor, QXColorValue3D(0.1, 0.2, 0.3, 1.0));
  EXPECT_EQ(copy.m_SpecularColor, QXColorValue3D(0.6, 0.7, 0.8, 1.0));
  EXPECT_EQ(copy.m_dShininess, 16.0);
  EXPECT_EQ(copy.m_Bounds.GetMax(), QXVector3d(2.0, 3.0, 1.0));
  EXPECT_EQ(copy.m_pVertexPackage->m_pVertices[3], 2.0f);
  ASSERT_EQ(copy.m_arrIndexPackages.GetSize(), 2u);
  EXPECT_EQ(copy.m_arrIndexPackages[0]->GetIndices16()[0], 0);
  EXPECT_EQ(copy.m_arrIndexPackages[1]->m_nIndexType, 1);
  EXPECT_EQ(copy.m_arrIndexPackages[1]->GetIndices32()[1], 2u);
  EXPECT_EQ(copy.m_arrIndexPackages[1]->m_bFlag, 1);
  EXPECT_EQ(copy.m_arrIndexPackages[1]->m_arrPassNames.GetSize(), 1u);
  EXPECT_EQ(copy.GetTriangleCount(), 2u);
}

TEST(QXModelMesh, AssignmentReplacesAndSurvivesItself) {
  std::unique_ptr<QXModelMesh> const pFirst(MakeTriangle());
  std::unique_ptr<QXModelMesh> const pSecond(
      MakeMesh({0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 1.0f, 1.0f, 0.0f}, {0, 1, 2, 1, 3, 2}));
  *pFirst = *pSecond;
  EXPECT_EQ(pFirst->GetTriangleCount(), 2u);
  EXPECT_NE(pFirst->m_pVertexPackage, pSecond->m_pVertexPackage);
  QXModelMesh const& self = *pFirst;
  *pFirst = self;
  EXPECT_EQ(pFirst->GetTriangleCount(), 2u);
  EXPECT_EQ(pFirst->m_pVertexPackage->m_nVertexNum, 4u);
}

}  // namespace
}  // namespace QXC
