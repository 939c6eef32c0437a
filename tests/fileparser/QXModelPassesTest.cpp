// The passes that a model makes of its materials.
#include <tests/fileparser/QXModelMaker.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <limits>
#include <string>

namespace QXC {
namespace {

class QXModelPasses : public testing::Test {
protected:
  QXModelPasses() {
    m_Model.SetName(L"/m/house.obj");
    AddMesh(L"brick");
  }

  QXModelMesh& AddMesh(wchar_t const* szMaterial) {
    QXModelMesh* pMesh = MakeTriangle();
    pMesh->m_strMaterialName = szMaterial;
    m_Model.AddMesh(pMesh);
    return *pMesh;
  }
  QXModelMesh& Mesh() { return *m_Model.GetMesh(0); }
  /// Lays a picture in a file on the first mesh.
  QXModelImage& AddPicture(wchar_t const* szPath) {
    auto* pImage = new QXModelImage;
    pImage->m_strFilePath = szPath;
    Mesh().m_Texture.m_nImage = m_Model.AddImage(pImage);
    return *pImage;
  }
  QXPass& PassOf(int nMesh) {
    QXIndexPackage const& package = *m_Model.GetMesh(nMesh)->m_arrIndexPackages[0];
    if (package.m_arrPassNames.GetSize() != 1) throw std::runtime_error("not one pass");
    return *m_Model.GetPasses().at(package.m_arrPassNames[0]);
  }
  QXPass& Make() {
    m_Model.MakePasses();
    return PassOf(0);
  }

  ModelDataInfo m_Model;
};

TEST_F(QXModelPasses, AreNoneAtFirst) {
  EXPECT_TRUE(m_Model.GetPasses().empty());
  EXPECT_EQ(Mesh().m_arrIndexPackages[0]->m_arrPassNames.GetSize(), 0U);
}

TEST_F(QXModelPasses, AreWhiteAndLitOnBothSidesForAMaterialThatSaysNothing) {
  QXPass const& pass = Make();
  EXPECT_EQ(pass.m_clrAmbient, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(pass.m_clrDiffuse, QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(pass.m_clrSpecular, QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  EXPECT_EQ(pass.m_clrEmissive, QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  EXPECT_EQ(pass.m_dShininess, 0.0);
  EXPECT_EQ(pass.m_bLighting, 1);
  EXPECT_EQ(pass.m_eCulling, CULLING_NONE);
  EXPECT_EQ(pass.GetTextureUnitStatesSize(), 0U);
  EXPECT_EQ(pass.m_eSourceFactor, BLEND_ONE);
  EXPECT_EQ(pass.m_eDestFactor, BLEND_ZERO);
  EXPECT_EQ(pass.m_bDepthWrite, 1);
  EXPECT_EQ(pass.m_eAlphaFunction, COMPARE_ALWAYS);
}

TEST_F(QXModelPasses, HaveTheColoursOfTheMaterial) {
  Mesh().m_BaseColor = QXColorValue3D(0.5, 0.25, 0.125, 1.0);
  Mesh().m_EmissiveColor = QXColorValue3D(0.1, 0.2, 0.3, 1.0);
  Mesh().m_SpecularColor = QXColorValue3D(0.6, 0.7, 0.8, 1.0);
  Mesh().m_dShininess = 32.0;
  QXPass const& pass = Make();
  EXPECT_EQ(pass.m_clrAmbient, QXColorValue3D(0.5, 0.25, 0.125, 1.0));
  EXPECT_EQ(pass.m_clrDiffuse, QXColorValue3D(0.5, 0.25, 0.125, 1.0));
  EXPECT_EQ(pass.m_clrEmissive, QXColorValue3D(0.1, 0.2, 0.3, 1.0));
  EXPECT_EQ(pass.m_clrSpecular, QXColorValue3D(0.6, 0.7, 0.8, 1.0));
  EXPECT_EQ(pass.m_dShininess, 32.0);
}

TEST_F(QXModelPasses, HaveThePictureInUnit0) {
  AddPicture(L"/m/brick.jpg");
  Mesh().m_Texture.m_matTransform[3][0] = 0.25;
  QXPass const& pass = Make();
  ASSERT_EQ(pass.GetTextureUnitStatesSize(), 1U);
  EXPECT_TRUE(pass.GetTextureUnitState(0)->GetTextureName() == L"/m/brick.jpg");
  EXPECT_EQ(pass.GetTextureUnitState(0)->GetTextureTransform(), Mesh().m_Texture.m_matTransform);
  EXPECT_EQ(pass.m_nUnitWords[0], 0U);
  // A JPEG file has no alpha.
  EXPECT_EQ(pass.m_eSourceFactor, BLEND_ONE);
  EXPECT_EQ(pass.m_eAlphaFunction, COMPARE_ALWAYS);
}

TEST_F(QXModelPasses, ClampWhereThePictureDoes) {
  AddPicture(L"/m/brick.jpg");
  Mesh().m_Texture.m_eWrapU = QX_WRAP_CLAMP;
  EXPECT_EQ(Make().m_nUnitWords[0], static_cast<unsigned int>(UNIT_WORD_CLAMP_U));
  Mesh().m_Texture.m_eWrapU = QX_WRAP_MIRROR;
  Mesh().m_Texture.m_eWrapV = QX_WRAP_CLAMP;
  EXPECT_EQ(Make().m_nUnitWords[0], static_cast<unsigned int>(UNIT_WORD_CLAMP_V));
}

TEST_F(QXModelPasses, AreWhiteUnderAPictureThatReplacesTheColour) {
  AddPicture(L"/m/brick.jpg");
  Mesh().m_BaseColor = QXColorValue3D(0.0, 0.5, 0.0, 0.75);
  EXPECT_EQ(Make().m_clrDiffuse, QXColorValue3D(0.0, 0.5, 0.0, 0.75));
  Mesh().m_Texture.m_bReplacesColor = 1;
  EXPECT_EQ(Make().m_clrDiffuse, QXColorValue3D(1.0, 1.0, 1.0, 0.75));
  Mesh().m_Texture.m_nImage = -1;
  EXPECT_EQ(Make().m_clrDiffuse, QXColorValue3D(0.0, 0.5, 0.0, 0.75));
}

void ExpectBlended(QXPass const& pass, unsigned char bDepthWrite) {
  EXPECT_EQ(pass.m_eSourceFactor, BLEND_SOURCE_ALPHA);
  EXPECT_EQ(pass.m_eDestFactor, BLEND_ONE_MINUS_SOURCE_ALPHA);
  EXPECT_EQ(pass.m_bDepthWrite, bDepthWrite);
}

TEST_F(QXModelPasses, BlendWhatLetsSomethingThrough) {
  Mesh().m_BaseColor.a = 0.5;
  ExpectBlended(Make(), 0);
  EXPECT_EQ(PassOf(0).m_eAlphaFunction, COMPARE_ALWAYS);
  Mesh().m_BaseColor.a = 1.0;
  Mesh().m_pVertexPackage->m_bTransparent = 1;
  ExpectBlended(Make(), 0);
}

TEST_F(QXModelPasses, BlendThePictureOfAMaterialThatSaysSo) {
  AddPicture(L"/m/glass.jpg");
  Mesh().m_Texture.m_eAlpha = QX_ALPHA_BLEND;
  ExpectBlended(Make(), 0);
}

TEST_F(QXModelPasses, KeepDepthsUnderAPictureThatMayHaveAnAlpha) {
  AddPicture(L"/m/tree.png");
  ExpectBlended(Make(), 1);
  EXPECT_EQ(PassOf(0).m_eAlphaFunction, COMPARE_GREATER);
  EXPECT_EQ(PassOf(0).m_nAlphaReference, 0);
  // Carried: by its bytes.
  QXModelImage& image = AddPicture(L"");
  for (int n : {0xFF, 0xD8, 0xFF, 0xE0}) image.m_arrBytes.Add(static_cast<unsigned char>(n));
  EXPECT_EQ(Make().m_eSourceFactor, BLEND_ONE);
  image.m_arrBytes.RemoveAll();
  for (int n : {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A}) image.m_arrBytes.Add(static_cast<unsigned char>(n));
  ExpectBlended(Make(), 1);
}

TEST_F(QXModelPasses, DoNotLookAtTheAlphaOfAnOpaqueMaterial) {
  AddPicture(L"/m/wall.png");
  Mesh().m_Texture.m_eAlpha = QX_ALPHA_OPAQUE;
  Mesh().m_BaseColor.a = 0.5;
  QXPass const& pass = Make();
  EXPECT_EQ(pass.m_eSourceFactor, BLEND_ONE);
  EXPECT_EQ(pass.m_eDestFactor, BLEND_ZERO);
  EXPECT_EQ(pass.m_clrDiffuse.a, 1.0);
  EXPECT_EQ(pass.m_clrAmbient.a, 1.0);
  EXPECT_EQ(pass.m_eAlphaFunction, COMPARE_ALWAYS);
}

TEST_F(QXModelPasses, CutOutFromTheThresholdOn) {
  AddPicture(L"/m/leaf.png");
  Mesh().m_Texture.m_eAlpha = QX_ALPHA_MASK;
  // 0.5 of 255 is 127.5, which byte 128 is the first to reach.
  EXPECT_EQ(Make().m_eAlphaFunction, COMPARE_GREATER_EQUAL);
  EXPECT_EQ(PassOf(0).m_nAlphaReference, 128);
  EXPECT_EQ(PassOf(0).m_eSourceFactor, BLEND_ONE);
  EXPECT_EQ(PassOf(0).m_bDepthWrite, 1);
  Mesh().m_Texture.m_dAlphaCutoff = 1.0;
  EXPECT_EQ(Make().m_eAlphaFunction, COMPARE_GREATER_EQUAL);
  EXPECT_EQ(PassOf(0).m_nAlphaReference, 255);
  for (double const dAll : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
    Mesh().m_Texture.m_dAlphaCutoff = dAll;
    EXPECT_EQ(Make().m_eAlphaFunction, COMPARE_ALWAYS);
  }
  for (double const dNone : {1.01, 1e9}) {
    Mesh().m_Texture.m_dAlphaCutoff = dNone;
    EXPECT_EQ(Make().m_eAlphaFunction, COMPARE_NEVER);
  }
}

TEST_F(QXModelPasses, AreSharedByMeshesThatLookTheSameAndNamedAfterTheirMaterials) {
  AddMesh(L"brick");
  AddMesh(L"glass").m_BaseColor.a = 0.5;
  AddMesh(L"brick").m_BaseColor.r = 0.5;
  AddMesh(L"brick").m_BaseColor.r = 0.25;
  m_Model.MakePasses();
  EXPECT_EQ(&PassOf(0), &PassOf(1));
  ASSERT_EQ(m_Model.GetPasses().size(), 4U);
  EXPECT_TRUE(PassOf(0).GetName() == L"/m/house.obj|brick");
  EXPECT_TRUE(PassOf(2).GetName() == L"/m/house.obj|glass");
  EXPECT_TRUE(PassOf(3).GetName() == L"/m/house.obj|brick#2");
  EXPECT_TRUE(PassOf(4).GetName() == L"/m/house.obj|brick#3");
  for (auto const& [strName, pPass] : m_Model.GetPasses()) EXPECT_TRUE(pPass->GetName() == strName);
}

TEST_F(QXModelPasses, StepOverNamesThatAMaterialHasByItself) {
  AddMesh(L"brick#2").m_BaseColor.r = 0.75;
  AddMesh(L"brick").m_BaseColor.r = 0.5;
  AddMesh(L"brick#2").m_BaseColor.r = 0.25;
  m_Model.MakePasses();
  ASSERT_EQ(m_Model.GetPasses().size(), 4U);
  EXPECT_TRUE(PassOf(1).GetName() == L"/m/house.obj|brick#2");
  EXPECT_TRUE(PassOf(2).GetName() == L"/m/house.obj|brick#3");
  EXPECT_TRUE(PassOf(3).GetName() == L"/m/house.obj|brick#2#2");
}

// Each would try all the numbers before its own, which takes minutes for as many.
TEST_F(QXModelPasses, OfThousandsOfMaterialsWithoutANameAreMadeAtOnce) {
  constexpr int Count = 20000;
  for (int i = 1; i < Count; ++i) AddMesh(L"brick").m_BaseColor.r = i / 100000.0;
  auto const start = std::chrono::steady_clock::now();
  m_Model.MakePasses();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
  EXPECT_EQ(m_Model.GetPasses().size(), static_cast<std::size_t>(Count));
  EXPECT_TRUE(PassOf(Count - 1).GetName() == (L"/m/house.obj|brick#" + std::to_wstring(Count)).c_str());
}

TEST_F(QXModelPasses, AreNamedInEachIndexPackageInPlaceOfWhatStoodThere) {
  auto* pSecond = new QXIndexPackage;
  pSecond->m_arrPassNames.Add(L"a");
  pSecond->m_arrPassNames.Add(L"b");
  Mesh().m_arrIndexPackages.Add(pSecond);
  m_Model.MakePasses();
  for (QXIndexPackage const* pPackage : Mesh().m_arrIndexPackages) {
    ASSERT_EQ(pPackage->m_arrPassNames.GetSize(), 1U);
    EXPECT_TRUE(pPackage->m_arrPassNames[0] == L"/m/house.obj|brick");
  }
}

TEST_F(QXModelPasses, TakeThePlaceOfThoseFromBefore) {
  m_Model.MakePasses();
  m_Model.GetPasses()[L"mine"] = new QXPass;
  Mesh().m_strMaterialName = L"wood";
  m_Model.MakePasses();
  ASSERT_EQ(m_Model.GetPasses().size(), 1U);
  EXPECT_TRUE(PassOf(0).GetName() == L"/m/house.obj|wood");
}

TEST_F(QXModelPasses, NameTexturesAfterFilesOrTheModelThatCarriesThem) {
  EXPECT_TRUE(AddPicture(L"/m/brick.png").m_strTextureName.IsEmpty());
  AddPicture(L"").m_arrBytes.Add(1);
  QXPass const& pass = Make();
  EXPECT_TRUE(m_Model.GetImage(0)->m_strTextureName == L"/m/brick.png");
  EXPECT_TRUE(m_Model.GetImage(1)->m_strTextureName == L"/m/house.obj|1");
  EXPECT_TRUE(pass.GetTextureUnitState(0)->GetTextureName() == L"/m/house.obj|1");
  m_Model.SetName(L"other");
  EXPECT_TRUE(m_Model.GetImage(1)->m_strTextureName == L"/m/house.obj|1");
}

TEST_F(QXModelPasses, OfACopyAreItsOwn) {
  m_Model.MakePasses();
  m_Model.GetPasses()[L"none"] = nullptr;
  ModelDataInfo copy(m_Model);
  ModelDataInfo assigned;
  assigned = m_Model;
  for (ModelDataInfo* pTaken : {&copy, &assigned}) {
    ASSERT_EQ(pTaken->GetPasses().size(), 1U);
    EXPECT_NE(pTaken->GetPasses().begin()->second, &PassOf(0));
    EXPECT_TRUE(pTaken->GetPasses().begin()->second->GetName() == PassOf(0).GetName());
    EXPECT_TRUE(pTaken->GetMesh(0)->m_arrIndexPackages[0]->m_arrPassNames[0] == PassOf(0).GetName());
  }
}

}  // namespace
}  // namespace QXC
