/// @file
/// The city of the files in tests/data/staticgeometry, made through the public members.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <fstream>
#include <iterator>
#include <string>

#include "QXStreamHelpers.h"

namespace QXTest {

/// The bytes of the file of one version, "1.0" to "1.3"; empty if it is missing.
inline QXBytes GoldenBytes(std::string const& strVersion) {
  std::ifstream file(
      std::string(QX_SOURCE_DIR) + "/tests/data/staticgeometry/city-" + strVersion + ".qsg", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline QXC::QXMatrix4d CountingMatrix(double dStep) {
  QXC::QXMatrix4d matrix;
  for (int i = 0; i < 16; ++i) matrix.m[i / 4][i % 4] = i * dStep;
  return matrix;
}

/// Everything differs from what a new pass has.
inline QXC::QXPass* MakeBrickPass() {
  auto* const pPass = new QXC::QXPass;
  pPass->SetName(L"wall of brick");
  pPass->SetPFFMode(1);
  pPass->m_strVertexProgram = L"wall.vert";
  pPass->m_strFragmentProgram = L"wall.frag";
  pPass->m_matPass = CountingMatrix(0.5);
  pPass->m_nPassWord = 42;
  unsigned int const arrWords[8] = {1, 2, 3, 0, 0, 0, 0, 0xFFFFFFFF};
  std::ranges::copy(arrWords, pPass->m_nUnitWords);
  pPass->m_bMultiTexture = 1;
  pPass->m_clrAmbient = QXC::QXColorValue3D(0.1, 0.2, 0.3, 0.4);
  pPass->m_clrDiffuse = QXC::QXColorValue3D(0.5, 0.6, 0.7, 0.8);
  pPass->m_clrSpecular = QXC::QXColorValue3D(0.9, 1.0, 0.0, 0.25);
  pPass->m_clrEmissive = QXC::QXColorValue3D(2.0, -1.0, 0.125, 0.75);
  pPass->m_dShininess = 32.5;
  pPass->m_bLighting = 0;
  pPass->m_eSourceFactor = QXC::BLEND_SOURCE_ALPHA;
  pPass->m_eDestFactor = QXC::BLEND_ONE_MINUS_SOURCE_ALPHA;
  pPass->m_eCulling = static_cast<QXC::CullingMode>(2);
  pPass->m_bDepthCheck = 0;
  pPass->m_bDepthWrite = 0;
  pPass->m_eDepthFunction = QXC::COMPARE_NOT_EQUAL;
  pPass->m_eAlphaFunction = QXC::COMPARE_GREATER;
  pPass->m_nAlphaReference = 128;
  pPass->m_dLineWidth = 2.5;
  pPass->m_dPointSize = 3.5;
  QXC::QXTextureUnitState* const pUnit = pPass->CreateTextureUnitState();
  pUnit->SetTextureName(L"brick.png");
  pUnit->m_matUnit = CountingMatrix(1.0);
  pUnit->SetTextureFiltering(QXC::TEXTURE_FILTER_MINIFICATION, QXC::TEXTURE_FILTER_ANISOTROPIC);
  pUnit->SetTextureFiltering(QXC::TEXTURE_FILTER_MAGNIFICATION, QXC::TEXTURE_FILTER_POINT);
  pUnit->SetTextureFiltering(QXC::TEXTURE_FILTER_MIPMAP, QXC::TEXTURE_FILTER_LINEAR);
  QXC::QXTextureEffect effect;
  effect.m_nType = 2;
  effect.m_nSubType = 1;
  pUnit->SetEffect(effect);
  effect.m_nType = 0;
  effect.m_nSubType = 3;
  pUnit->SetEffect(effect);
  pPass->CreateTextureUnitState();
  pPass->m_pExtension = new QXC::QXMaterialExtension(1);
  for (int i = 0; i < 10; ++i) {
    pPass->m_pExtension->m_fSlides[i / 5][i % 5] = static_cast<float>(i) * 0.25F;
    pPass->m_pExtension->m_fTurns[i / 5][i % 5] = -static_cast<float>(i);
  }
  return pPass;
}

/// A new pass with one texture.
inline QXC::QXPass* MakeRoofPass() {
  auto* const pPass = new QXC::QXPass;
  pPass->SetName(L"roof");
  pPass->CreateTextureUnitState()->SetTextureName(L"d\u00e4cher.png");
  return pPass;
}

inline QXC::QXIndexPackage* MakeIndices(int eOperation, int nWidth, unsigned char bFlag,
    std::vector<std::wstring> const& arrNames, std::vector<unsigned int> const& arrIndices) {
  auto* const pPackage = new QXC::QXIndexPackage;
  pPackage->m_eOperationType = eOperation;
  pPackage->m_bFlag = bFlag;
  for (std::wstring const& strName : arrNames) pPackage->m_arrPassNames.Add(strName.c_str());
  if (nWidth == 32) {
    pPackage->SetIndexNum32(static_cast<int>(arrIndices.size()));
    std::ranges::copy(arrIndices, pPackage->GetIndices32());
  } else {
    pPackage->SetIndexNum(static_cast<int>(arrIndices.size()));
    std::ranges::transform(
        arrIndices, pPackage->GetIndices16(), [](unsigned int nIndex) { return static_cast<unsigned short>(nIndex); });
  }
  return pPackage;
}

inline QXC::QXSubObjectInfo* MakeHouse() {
  auto* const pHouse = new QXC::QXSubObjectInfo;
  pHouse->m_BoundingSphere.SetCenter(QXC::QXVector3d(1.5, 2.5, -3.5));
  pHouse->m_BoundingSphere.SetRadius(4.25);
  pHouse->m_mapPassSlots = {{0, 0}, {1, 1}};
  for (int const nOffset : {0, 3}) pHouse->m_arrOffsets.Add(nOffset);
  for (int const nCount : {3, 6}) pHouse->m_arrCounts.Add(nCount);
  return pHouse;
}

/// 32-bit indices, two levels, two passes, two sub-objects.
inline QXC::QXStaticGeometryBucket* MakeWideBucket() {
  auto* const pBucket = new QXC::QXStaticGeometryBucket;
  pBucket->m_nIndexType = 1;
  pBucket->m_nType = 0;
  QXC::QXVertexDataPackage& package = *pBucket->m_pVertexPackage;
  package.m_nOptions = 0x407;
  SetPositions(package, 3, {0, 0, 0, 1, 0, 0, 0, 1, 0, 8, 8, -0.5F}, 12);
  SetNormals(package, 3, {0, 0, 1, 0, 0, 1, 0, 1, 0, 1, 0, 0});
  SetColors(package, {0xFF0000FF, 0xFF00FF00, 0xFFFF0000, 0x80FFFFFF}, 4);
  SetUnit(package, 0, 2, {0, 0, 1, 0, 0, 1, 0.5F, 0.25F});
  SetUnit(package, 1, 4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, 16);
  pBucket->m_mapLevelIndices[0] = {MakeIndices(4, 32, 1, {L"brick"}, {0, 1, 2}),
      MakeIndices(4, 32, 0, {L"d\u00e4cher", L"brick"}, {1, 2, 3, 0, 70000, 2})};
  pBucket->m_mapLevelIndices[2] = {MakeIndices(2, 16, 0, {}, {0, 3})};
  pBucket->m_mapPasses[L"brick"] = MakeBrickPass();
  pBucket->m_mapPasses[L"d\u00e4cher"] = MakeRoofPass();
  pBucket->m_mapSubObjects[0] = MakeHouse();
  pBucket->m_mapSubObjects[3] = new QXC::QXSubObjectInfo;
  return pBucket;
}

/// 16-bit indices, normals of another dimension, nothing else.
inline QXC::QXStaticGeometryBucket* MakeNarrowBucket(int nType) {
  auto* const pBucket = new QXC::QXStaticGeometryBucket;
  pBucket->m_nType = nType;
  SetPositions(*pBucket->m_pVertexPackage, 3, {1, 2, 3, 4, 5, 6});
  SetNormals(*pBucket->m_pVertexPackage, 2, {0, 1, 1, 0}, 8);
  pBucket->m_mapLevelIndices[0] = {MakeIndices(1, 16, 0, {L""}, {0, 1})};
  return pBucket;
}

inline void FillCity(QXC::QXStaticGeometry& city) {
  for (int const nID : {7, -1, 2147483647}) city.m_arrID.Add(nID);
  city.m_vecBuckets32 = {MakeWideBucket()};
  city.m_vecBuckets16 = {MakeNarrowBucket(-7), new QXC::QXStaticGeometryBucket};
  city.m_vecTypedBuckets16 = {MakeNarrowBucket(1)};
  auto const sphere = [](double dX, double dY, double dZ, double dRadius) {
    QXC::QXBoundingSphere result;
    result.SetCenter(QXC::QXVector3d(dX, dY, dZ));
    result.SetRadius(dRadius);
    return result;
  };
  city.m_mapTextureSpheres[L"brick.png"].Add(sphere(1, 2, 3, 4));
  city.m_mapTextureSpheres[L"brick.png"].Add(sphere(-5.5, 6, 7, 0));
  city.m_mapTextureSpheres[L"d\u00e4cher.png"];
}

}  // namespace QXTest
