#include <plugins/assimp/QXModelStream.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace QXAssimp {
namespace {

/// Two meshes, one of 16-bit indices with colours and coordinates, one of 32-bit ones without.
QXC::ModelDataInfo MakeModel() {
  QXC::ModelDataInfo model;
  model.SetUpAxis(QXC::QX_UP_Z);
  QXC::QXModelMesh* pFirst = QXC::MakeTriangle();
  pFirst->m_strName = L"wall \x1F3E0";
  pFirst->m_strMaterialName = L"brick";
  pFirst->m_bBaseColorSet = 1;
  pFirst->m_BaseColor = QXC::QXColorValue3D(0.5, 0.25, 0.125, 0.75);
  pFirst->m_EmissiveColor = QXC::QXColorValue3D(0.1, 0.2, 0.3, 1.0);
  pFirst->m_SpecularColor = QXC::QXColorValue3D(0.6, 0.7, 0.8, 1.0);
  pFirst->m_dShininess = 16.0;
  pFirst->m_pVertexPackage->SetColorNum(3, 0);
  pFirst->m_pVertexPackage->m_pColors[2] = 0x80FF00FFu;
  pFirst->m_pVertexPackage->SetTexCoordNum(0, 3, 0);
  pFirst->m_pVertexPackage->m_pTexCoords[0][5] = 0.25f;
  pFirst->m_pVertexPackage->m_bTransparent = 1;
  pFirst->m_Texture.m_nImage = 1;
  pFirst->m_Texture.m_eWrapU = QXC::QX_WRAP_CLAMP;
  pFirst->m_Texture.m_eWrapV = QXC::QX_WRAP_MIRROR;
  pFirst->m_Texture.m_matTransform[3][1] = 0.125;
  pFirst->m_Texture.m_bReplacesColor = 1;
  pFirst->m_Texture.m_eAlpha = QXC::QX_ALPHA_MASK;
  pFirst->m_Texture.m_dAlphaCutoff = 0.75;
  model.AddMesh(pFirst);
  auto* pFile = new QXC::QXModelImage;
  pFile->m_strName = L"brick \x1F9F1.png";
  pFile->m_strFilePath = L"/models/brick.png";
  model.AddImage(pFile);
  auto* pCarried = new QXC::QXModelImage;
  pCarried->m_strName = L"wood";
  for (int n : {0x89, 0x50, 0x00, 0xFF}) pCarried->m_arrBytes.Add(static_cast<unsigned char>(n));
  model.AddImage(pCarried);
  QXC::QXModelMesh* pSecond = QXC::MakeTriangle();
  auto* pWide = new QXC::QXIndexPackage;
  pWide->SetIndexNum32(3);
  for (unsigned int i = 0; i < 3; ++i) pWide->GetIndices32()[i] = 2 - i;
  pSecond->m_arrIndexPackages.Add(pWide);
  model.AddMesh(pSecond);
  model.AddNode(QXC::MakeNode(0, 604099.125, 0.0, 0.0));
  model.AddNode(QXC::MakeNode(1, 0.0, 5.0, 0.0));
  return model;
}

TEST(QXModelStream, EverythingComesBack) {
  QXC::ModelDataInfo const model = MakeModel();
  std::vector<unsigned char> vecBytes;
  WriteModel(model, vecBytes);
  std::unique_ptr<QXC::ModelDataInfo> const pModel = ReadModel(vecBytes);
  ASSERT_NE(pModel, nullptr);
  EXPECT_EQ(pModel->GetUpAxis(), QXC::QX_UP_Z);
  ASSERT_EQ(pModel->GetMeshCount(), 2);
  QXC::QXModelMesh const& mesh = *pModel->GetMesh(0);
  EXPECT_TRUE(mesh.m_strName == L"wall \x1F3E0");
  EXPECT_TRUE(mesh.m_strMaterialName == L"brick");
  EXPECT_EQ(mesh.m_bBaseColorSet, 1);
  EXPECT_EQ(mesh.m_BaseColor, QXC::QXColorValue3D(0.5, 0.25, 0.125, 0.75));
  EXPECT_EQ(mesh.m_EmissiveColor, QXC::QXColorValue3D(0.1, 0.2, 0.3, 1.0));
  EXPECT_EQ(mesh.m_SpecularColor, QXC::QXColorValue3D(0.6, 0.7, 0.8, 1.0));
  EXPECT_EQ(mesh.m_dShininess, 16.0);
  EXPECT_EQ(mesh.m_pVertexPackage->m_pColors[2], 0x80FF00FFu);
  EXPECT_EQ(mesh.m_pVertexPackage->m_pTexCoords[0][5], 0.25f);
  EXPECT_EQ(mesh.m_pVertexPackage->m_bTransparent, 1);
  EXPECT_EQ(mesh.m_Bounds.GetMax(), QXC::QXVector3d(2.0, 3.0, 1.0));
  EXPECT_EQ(mesh.m_Texture.m_nImage, 1);
  EXPECT_EQ(mesh.m_Texture.m_eWrapU, QXC::QX_WRAP_CLAMP);
  EXPECT_EQ(mesh.m_Texture.m_eWrapV, QXC::QX_WRAP_MIRROR);
  EXPECT_EQ(mesh.m_Texture.m_matTransform[3][1], 0.125);
  EXPECT_EQ(mesh.m_Texture.m_bReplacesColor, 1);
  EXPECT_EQ(mesh.m_Texture.m_eAlpha, QXC::QX_ALPHA_MASK);
  EXPECT_EQ(mesh.m_Texture.m_dAlphaCutoff, 0.75);
  ASSERT_EQ(pModel->GetImageCount(), 2);
  EXPECT_TRUE(pModel->GetImage(0)->m_strName == L"brick \x1F9F1.png");
  EXPECT_TRUE(pModel->GetImage(0)->m_strFilePath == L"/models/brick.png");
  EXPECT_EQ(pModel->GetImage(0)->m_arrBytes.GetSize(), 0u);
  ASSERT_EQ(pModel->GetImage(1)->m_arrBytes.GetSize(), 4u);
  EXPECT_EQ(pModel->GetImage(1)->m_arrBytes[3], 0xFF);
  QXC::QXModelMesh const& second = *pModel->GetMesh(1);
  EXPECT_EQ(second.m_pVertexPackage->m_pColors, nullptr);
  EXPECT_EQ(second.m_pVertexPackage->m_pTexCoords[0], nullptr);
  ASSERT_EQ(second.m_arrIndexPackages.GetSize(), 2u);
  EXPECT_EQ(second.m_arrIndexPackages[1]->GetIndices32()[0], 2u);
  EXPECT_EQ(pModel->GetNode(0)->m_matWorld[3][0], 604099.125);
  EXPECT_EQ(pModel->GetNode(1)->m_nMesh, 1);
  std::vector<unsigned char> vecAgain;
  WriteModel(*pModel, vecAgain);
  EXPECT_EQ(vecAgain, vecBytes);
}

TEST(QXModelStream, EveryShorterOrLongerStreamIsRefused) {
  std::vector<unsigned char> vecBytes;
  WriteModel(MakeModel(), vecBytes);
  for (std::size_t nLength = 0; nLength < vecBytes.size(); ++nLength) {
    std::vector<unsigned char> const vecCut(vecBytes.begin(), vecBytes.begin() + static_cast<std::ptrdiff_t>(nLength));
    EXPECT_EQ(ReadModel(vecCut), nullptr) << nLength;
  }
  vecBytes.push_back(0);
  EXPECT_EQ(ReadModel(vecBytes), nullptr);
}

TEST(QXModelStream, TextureThatCannotBeIsRefused) {
  auto const isTaken = [](auto&& change) {
    QXC::ModelDataInfo model = MakeModel();
    change(model);
    std::vector<unsigned char> vecBytes;
    WriteModel(model, vecBytes);
    return ReadModel(vecBytes) != nullptr;
  };
  double const dNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(isTaken([](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_nImage = 0; }));
  EXPECT_FALSE(isTaken([](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_nImage = 2; }));
  EXPECT_FALSE(isTaken([](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_nImage = -2; }));
  // A picture without coordinates to lay it by.
  EXPECT_FALSE(isTaken([](QXC::ModelDataInfo& model) { model.GetMesh(1)->m_Texture.m_nImage = 0; }));
  EXPECT_FALSE(isTaken(
      [](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_eWrapU = static_cast<QXC::QXModelWrap>(3); }));
  EXPECT_FALSE(isTaken(
      [](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_eAlpha = static_cast<QXC::QXModelAlpha>(4); }));
  EXPECT_FALSE(isTaken([dNaN](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_matTransform[0][1] = dNaN; }));
  EXPECT_FALSE(isTaken([dNaN](QXC::ModelDataInfo& model) { model.GetMesh(0)->m_Texture.m_dAlphaCutoff = dNaN; }));
}

TEST(QXModelStream, AnyWordReplacedByALyingOneGivesNullOrAWholeModel) {
  std::vector<unsigned char> vecBytes;
  WriteModel(MakeModel(), vecBytes);
  for (unsigned int nLie : {0xFFFFFFFFu, 0x7FFFFFFFu, 0x80000000u, 3u, 0u}) {
    for (std::size_t nAt = 0; nAt + 4 <= vecBytes.size(); ++nAt) {
      std::vector<unsigned char> vecLying = vecBytes;
      std::memcpy(vecLying.data() + nAt, &nLie, 4);
      std::unique_ptr<QXC::ModelDataInfo> const pModel = ReadModel(vecLying);
      if (pModel == nullptr) continue;
      for (int i = 0; i < pModel->GetMeshCount(); ++i) {
        QXC::QXModelMesh const& mesh = *pModel->GetMesh(i);
        ASSERT_LT(mesh.m_Texture.m_nImage, pModel->GetImageCount());
        unsigned short const* pIndices = mesh.m_arrIndexPackages[0]->GetIndices16();
        for (int k = 0; k < mesh.m_arrIndexPackages[0]->m_nIndexNum; ++k)
          ASSERT_LT(pIndices[k], mesh.m_pVertexPackage->m_nVertexNum);
      }
    }
  }
}

}  // namespace
}  // namespace QXAssimp
