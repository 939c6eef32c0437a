// Textures as they come out of a frame.
#include <cmath>
#include <limits>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QXPixel BLUE_PIXEL{0, 0, 255, 255};
constexpr QXPixel WHITE_PIXEL{255, 255, 255, 255};

/// Red, green; blue, white.
std::vector<unsigned char> const FOUR = {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 255, 255, 255, 255, 255};
/// Red, green.
std::vector<unsigned char> const TWO = {0, 0, 255, 255, 0, 255, 0, 255};

std::vector<unsigned char> Plain(std::size_t nCount, std::vector<unsigned char> const& arrPixel) {
  std::vector<unsigned char> arrBytes;
  for (std::size_t i = 0; i < nCount; ++i) arrBytes.insert(arrBytes.end(), arrPixel.begin(), arrPixel.end());
  return arrBytes;
}

QXMatrix4d Translation(double x, double y) {
  QXMatrix4d mat;
  mat.SetTrans({x, y, 0.0});
  return mat;
}

QXMatrix4d Scaling(double x, double y) {
  QXMatrix4d mat;
  mat[0][0] = x;
  mat[1][1] = y;
  return mat;
}

}  // namespace

using QXOgreTexture = QXOgreTexturing;

TEST_F(QXOgreTexture, TheFirstRowStandsWhereVIsZero) {
  DrawTextured(MakeTexture(2, 2, PF_A8R8G8B8, FOUR));
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(8, 8), RED_PIXEL);
  EXPECT_EQ(picture.At(56, 8), GREEN_PIXEL);
  EXPECT_EQ(picture.At(8, 56), BLUE_PIXEL);
  EXPECT_EQ(picture.At(56, 56), WHITE_PIXEL);
}

TEST_F(QXOgreTexture, AReversedTextureStandsOnItsHead) {
  QXTexture* const pTexture = MakeTexture(2, 2, PF_A8R8G8B8, FOUR);
  DrawTextured(pTexture);
  pTexture->SetReverse(1);
  EXPECT_EQ(Frame().At(8, 8), BLUE_PIXEL);
  pTexture->SetReverse(0);
  EXPECT_EQ(Frame().At(8, 8), RED_PIXEL);
}

TEST_F(QXOgreTexture, EdgesOfAnyLengthKeepTheirPixels) {
  // 3 x 5, one colour a row, one byte of green a column.
  std::vector<unsigned char> arrBytes;
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 3; ++x)
      for (int const n : {0, 100 * x, 50 * y}) arrBytes.push_back(static_cast<unsigned char>(n));
  DrawTextured(MakeTexture(3, 5, PF_R8G8B8, arrBytes));
  QXPicture const picture = Frame();
  for (unsigned int y = 0; y < 5; ++y)
    for (unsigned int x = 0; x < 3; ++x)
      EXPECT_EQ(picture.At((2 * x + 1) * 64 / 6, (2 * y + 1) * 64 / 10),
          (QXPixel{static_cast<int>(50 * y), static_cast<int>(100 * x), 0, 255}))
          << x << ", " << y;
}

TEST_F(QXOgreTexture, TextureRangeAndDrawableMultiplyTheirColours) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {200, 100, 255, 255});
  auto const pMesh = MakeTexturedMesh();
  AddTexturedRange(*pMesh, pTexture, QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  Draw(*pMesh)->SetColor(QXColorValue3D(1.0, 1.0, 0.5, 1.0));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 100, 1);
  EXPECT_NEAR(pixel.b, 100, 1);
}

TEST_F(QXOgreTexture, LightFallsOnTextures) {
  m_pTarget->SetSunLightEnable(1);
  m_pTarget->SetAmbientLight(QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  m_pTarget->SetDiffuseLight(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  DrawTextured(MakeTexture(1, 1, PF_A8R8G8B8, {0, 100, 200, 255}));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 100, 1);
  EXPECT_NEAR(pixel.g, 50, 1);
}

TEST_F(QXOgreTexture, ColoursAreThoseOfTheImageWhateverItsCurve) {
  for (int const nCurve : {0, 1}) {
    QXTexture* const pTexture = MakeTexture();
    pTexture->SetSRGB(static_cast<unsigned char>(nCurve));
    pTexture->SetTextureData(1, 1, NewBlock({40, 128, 220, 255}), 0, PF_A8R8G8B8);
    pTexture->LoadTexture(0, 0);
    DrawTextured(pTexture);
    EXPECT_EQ(Frame().At(32, 32), (QXPixel{220, 128, 40, 255})) << nCurve;
  }
}

TEST_F(QXOgreTexture, RepeatsOrKeepsToItsEdge) {
  QXTexture* const pTexture = MakeTexture(2, 1, PF_A8R8G8B8, TWO);
  DrawTextured(pTexture, 2.0F);
  QXPicture const clamped = Frame();
  EXPECT_EQ(clamped.At(8, 32), RED_PIXEL);
  EXPECT_EQ(clamped.At(24, 32), GREEN_PIXEL);
  EXPECT_EQ(clamped.At(40, 32), GREEN_PIXEL);
  pTexture->SetTextureRepeatMode(1);
  QXPicture const repeated = Frame();
  EXPECT_EQ(repeated.At(8, 32), RED_PIXEL);
  EXPECT_EQ(repeated.At(40, 32), RED_PIXEL);
  EXPECT_EQ(repeated.At(56, 32), GREEN_PIXEL);
}

TEST_F(QXOgreTexture, FiltersAreTheTexturesThenTheUnitsThenLinear) {
  QXTexture* const pTexture = MakeTexture(2, 1, PF_A8R8G8B8, TWO);
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(30, 32), RED_PIXEL) << "the nearest pixel, as the fixture asks";
  pTexture->RendererOperation1(-1, -1, -1);
  QXPixel const linear = Frame().At(32, 32);
  EXPECT_NEAR(linear.r, 126, 4);
  EXPECT_NEAR(linear.g, 129, 4);
  m_pGraphics3D->SetTextureUnitFiltering(0, 1, 1, 0);
  EXPECT_EQ(Frame().At(30, 32), RED_PIXEL);
  m_pGraphics3D->SetTextureUnitFiltering(8, 2, 2, 2);
  pTexture->RendererOperation1(2, 2, 0);
  EXPECT_NEAR(Frame().At(32, 32).r, 126, 4);
}

TEST_F(QXOgreTexture, LevelsOfTheBlockAreChosenByDistance) {
  // 64 red, 32 green, 16 blue, and white below.
  std::vector<unsigned char> arrBytes = Plain(64 * 64, {0, 0, 255, 255});
  for (auto const& [nEdge, arrPixel] :
      std::vector<std::pair<std::size_t, std::vector<unsigned char>>>{{32, {0, 255, 0, 255}}, {16, {255, 0, 0, 255}},
          {8, {255, 255, 255, 255}}, {4, {255, 255, 255, 255}}, {2, {255, 255, 255, 255}}, {1, {255, 255, 255, 255}}}) {
    std::vector<unsigned char> const arrLevel = Plain(nEdge * nEdge, arrPixel);
    arrBytes.insert(arrBytes.end(), arrLevel.begin(), arrLevel.end());
  }
  QXTexture* const pTexture = MakeTexture();
  pTexture->RendererOperation1(1, 1, 1);
  pTexture->SetTextureData(64, 64, NewBlock(arrBytes), 0, PF_A8R8G8B8);
  pTexture->m_TextureData.SetBlockLength(arrBytes.size());
  QdcArray<unsigned int> arrOffsets;
  QXTexture::BuildMipmapOffset(64, 64, PF_A8R8G8B8, 0, arrOffsets);
  pTexture->SetMipmapOffset(arrOffsets);
  pTexture->LoadTexture(0, 0);
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "a pixel of the image on a pixel of the picture";
  DrawTextured(pTexture, 2.0F);
  EXPECT_EQ(Frame().At(8, 8), GREEN_PIXEL);
  m_arrOperations.back()->SetVisible(0);
  pTexture->SetMipmapBaseLevel(2);
  EXPECT_EQ(Frame().At(32, 32), BLUE_PIXEL);
  EXPECT_EQ(pTexture->GetMipmapBaseLevel(), 2);
  pTexture->SetMipmapBaseLevel(0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  DrawTextured(pTexture, 8.0F);
  EXPECT_EQ(Frame().At(2, 2), WHITE_PIXEL);
  pTexture->SetMipmapMaxLevel(1);
  EXPECT_EQ(Frame().At(2, 2), GREEN_PIXEL);
  EXPECT_EQ(pTexture->GetMipmapMaxLevel(), 1);
  // Levels that do not exist give way, also after the texture was made anew.
  pTexture->SetMipmapBaseLevel(99);
  pTexture->SetMipmapMaxLevel(99);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(Frame().At(2, 2), WHITE_PIXEL);
  pTexture->SetMipmapBaseLevel(-5);
  pTexture->SetMipmapMaxLevel(-5);
  EXPECT_EQ(Frame().At(2, 2), RED_PIXEL);
  // Without the filter between levels only the first is used.
  pTexture->SetMipmapMaxLevel(1000);
  EXPECT_EQ(Frame().At(2, 2), WHITE_PIXEL);
  pTexture->RendererOperation1(1, 1, 0);
  EXPECT_EQ(Frame().At(2, 2), RED_PIXEL);
}

TEST_F(QXOgreTexture, AMipTableSizedButNotFilledMeansLevelsOneAfterTheOther) {
  std::vector<unsigned char> arrBytes = Plain(4 * 4, {0, 0, 255, 255});
  for (int const n : Plain(2 * 2 + 1, {0, 255, 0, 255})) arrBytes.push_back(static_cast<unsigned char>(n));
  QXTexture* const pTexture = MakeTexture();
  pTexture->SetTextureData(4, 4, NewBlock(arrBytes), 0, PF_A8R8G8B8);
  pTexture->m_TextureData.SetBlockLength(arrBytes.size());
  pTexture->m_arrMipmapOffset.SetSize(3);
  pTexture->LoadTexture(0, 0);
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pTexture->SetMipmapBaseLevel(1);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreTexture, LevelsBeyondTheBlockAreLeftOut) {
  for (int const nKnown : {0, 1}) {
    QXTexture* const pTexture = MakeTexture();
    pTexture->SetTextureData(4, 4, NewBlock(Plain(16, {0, 0, 255, 255})), 0, PF_A8R8G8B8);
    pTexture->m_TextureData.SetBlockLength(nKnown ? 64 : 0);
    // A table for blocks of 4 x 4, which would let the second level begin inside the first.
    pTexture->BuildMipmapOffset();
    ASSERT_EQ(pTexture->m_arrMipmapOffset.GetSize(), 3U);
    pTexture->LoadTexture(0, 0);
    DrawTextured(pTexture);
    pTexture->SetMipmapBaseLevel(2);
    EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << nKnown;
    std::unique_ptr<QXImageData> const pImage(pTexture->BlitToMemory());
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(pImage->m_nWidth, 4U);
    delete[] static_cast<unsigned char*>(pImage->m_pPixels);
  }
}

TEST_F(QXOgreTexture, LevelsAreMadeWhereMipMapsAreSwitchedOn) {
  // A chessboard of black and white: from far it is gray.
  std::vector<unsigned char> arrBytes;
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x)
      for (int i = 0; i < 4; ++i) arrBytes.push_back((x + y) % 2 == 0 || i == 3 ? std::uint8_t{255} : std::uint8_t{0});
  for (int const nLevels : {0, 1}) {
    QXTexture* const pTexture = MakeTexture();
    pTexture->SetTextureMipMap(static_cast<unsigned char>(nLevels));
    pTexture->SetTextureRepeatMode(1);
    pTexture->RendererOperation1(1, 1, 1);
    pTexture->SetTextureData(64, 64, NewBlock(arrBytes), 0, PF_A8R8G8B8);
    pTexture->LoadTexture(0, 0);
    DrawTextured(pTexture, 8.0F);
    QXPixel const pixel = Frame().At(21, 42);
    if (nLevels) {
      EXPECT_NEAR(pixel.r, 128, 2);
    } else {
      EXPECT_TRUE(pixel.r == 0 || pixel.r == 255) << pixel;
    }
  }
}

TEST_F(QXOgreTexture, AMipmapBiasSharpensOrBlurs) {
  std::vector<unsigned char> arrBytes = Plain(64 * 64, {0, 0, 255, 255});
  for (int const n : Plain(32 * 32, {0, 255, 0, 255})) arrBytes.push_back(static_cast<unsigned char>(n));
  QXTexture* const pTexture = MakeTexture();
  pTexture->RendererOperation1(1, 1, 1);
  pTexture->SetTextureData(64, 64, NewBlock(arrBytes), 0, PF_A8R8G8B8);
  pTexture->m_TextureData.SetBlockLength(arrBytes.size());
  pTexture->m_arrMipmapOffset.SetSize(2);
  pTexture->LoadTexture(0, 0);
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pGraphics3D->SetTextureMipmapBias(0, 1.0);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  m_pGraphics3D->SetTextureMipmapBias(0, std::numeric_limits<double>::quiet_NaN());
  m_pGraphics3D->SetTextureMipmapBias(9, 0.0);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL) << "what is no number changes nothing";
  m_pGraphics3D->SetTextureMipmapBias(0, 0.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreTexture, AnisotropyTakesTheFinerLevelOfAnObliqueView) {
  std::vector<unsigned char> arrBytes = Plain(64 * 64, {0, 0, 255, 255});
  for (int const n : Plain(32 * 32, {0, 255, 0, 255})) arrBytes.push_back(static_cast<unsigned char>(n));
  QXTexture* const pTexture = MakeTexture();
  pTexture->RendererOperation1(2, 2, 1);
  pTexture->SetTextureData(64, 64, NewBlock(arrBytes), 0, PF_A8R8G8B8);
  pTexture->m_TextureData.SetBlockLength(arrBytes.size());
  pTexture->m_arrMipmapOffset.SetSize(2);
  pTexture->LoadTexture(0, 0);
  // Sixteen times as dense along v as along u.
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddTexCoords(*pMesh, 0, {0.0F, 8.0F, 1.0F, 8.0F, 1.0F, 0.0F, 0.0F, 0.0F});
  pTexture->SetTextureRepeatMode(1);
  AddTexturedRange(*pMesh, pTexture);
  Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  if (m_pGraphics3D->m_Capabilities.HasCapability(CAP_ANISOTROPY)) {
    m_pGraphics3D->SetTextureAnisotropy(0, 1000);
    EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
    m_pGraphics3D->SetTextureAnisotropy(0, 0);
    EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  }
}

TEST_F(QXOgreTexture, TransformsOfPackageDrawableAndTextureFollowEachOther) {
  QXTexture* const pTexture = MakeTexture(2, 2, PF_A8R8G8B8, FOUR);
  pTexture->SetTextureRepeatMode(1);
  auto const pMesh = MakeTexturedMesh();
  AddTexturedRange(*pMesh, pTexture)->m_matTextures[0] = Translation(0.5, 0.0);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(8, 8), GREEN_PIXEL) << "the package moves by half an image to the right";
  pOperation->SetTextureMatrix(0, Translation(0.0, 0.5));
  EXPECT_EQ(Frame().At(8, 8), WHITE_PIXEL) << "the drawable moves by half an image down";
  // First moved, then doubled: 0.125 + 0.5 lies at 1.25, in the first half again.
  pOperation->SetTextureMatrix(0, Scaling(2.0, 1.0));
  EXPECT_EQ(Frame().At(8, 8), RED_PIXEL);
  pOperation->SetTextureMatrix(0, QXMatrix4d::IDENTITY);
  pTexture->m_vecScale = QXVector3d(0.5, 1.0, 1.0);
  EXPECT_EQ(Frame().At(8, 8), RED_PIXEL) << "0.625 by half";
  pTexture->m_vecOffset = QXVector3d(0.0, 0.5, 0.0);
  EXPECT_EQ(Frame().At(8, 8), BLUE_PIXEL);
}

TEST_F(QXOgreTexture, ARotationTurnsTheCoordinatesAsRowVectors) {
  QXTexture* const pTexture = MakeTexture(2, 2, PF_A8R8G8B8, FOUR);
  pTexture->SetTextureRepeatMode(1);
  auto const pMesh = MakeTexturedMesh();
  QXMatrix4d matTurn;
  matTurn[0][0] = 0.0;
  matTurn[0][1] = 1.0;
  matTurn[1][0] = -1.0;
  matTurn[1][1] = 0.0;
  AddTexturedRange(*pMesh, pTexture)->m_matTextures[0] = matTurn;
  Draw(*pMesh);
  // (u, v) becomes (-v, u): the upper right corner, (7/8, 1/8), shows (7/8, 7/8).
  EXPECT_EQ(Frame().At(56, 8), WHITE_PIXEL);
  EXPECT_EQ(Frame().At(8, 8), GREEN_PIXEL);
}

TEST_F(QXOgreTexture, AUnitReadsItsOwnSetOrTheFirstThatThereIs) {
  QXTexture* const pTexture = MakeTexture(2, 1, PF_A8R8G8B8, TWO);
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddTexCoords(*pMesh, 2, {0.1F, 0.5F, 0.2F, 0.5F, 0.2F, 0.5F, 0.1F, 0.5F});
  AddTexCoords(*pMesh, 5, {0.8F, 0.5F, 0.9F, 0.5F, 0.9F, 0.5F, 0.8F, 0.5F});
  QXTexturePackage* const pPackage = AddTexturedRange(*pMesh, nullptr);
  pPackage->m_pTextures[5] = pTexture;
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  m_pGraphics3D->SetTextureCoordSet(5, 2);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pGraphics3D->SetTextureCoordSet(5, 5);
  m_pGraphics3D->SetTextureCoordSet(5, 8);
  m_pGraphics3D->SetTextureCoordSet(8, 2);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL) << "sets and units beyond the eighth are none";
  pPackage->m_pTextures[5] = nullptr;
  pPackage->m_pTextures[0] = pTexture;
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "unit 0 has no set of its own, set 2 is the first";
}

TEST_F(QXOgreTexture, WithoutCoordinatesTheColourStays) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 0, 255});
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddTexturedRange(*pMesh, pTexture, QXColorValue3D(1.0, 1.0, 0.0, 1.0));
  Draw(*pMesh)->SetTexture(0, pTexture);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 255, 0, 255}));
}

TEST_F(QXOgreTexture, SeveralUnitsMultiplyWhereThePackageAsksForAll) {
  QXTexture* const pYellow = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 255, 255});
  QXTexture* const pCyan = MakeTexture(1, 1, PF_A8R8G8B8, {255, 255, 0, 255});
  auto const pMesh = MakeTexturedMesh();
  QXTexturePackage* const pPackage = AddTexturedRange(*pMesh, nullptr);
  pPackage->m_pTextures[1] = pYellow;
  pPackage->m_pTextures[7] = pCyan;
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 255, 0, 255})) << "the first that has a texture";
  pPackage->m_bFlag = 1;
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
}

TEST_F(QXOgreTexture, EightUnitsFitIntoOneDrawOperation) {
  auto const pMesh = MakeTexturedMesh();
  QXTexturePackage* const pPackage = AddTexturedRange(*pMesh, nullptr);
  pPackage->m_bFlag = 1;
  for (unsigned int i = 0; i < 8; ++i) {
    pPackage->m_pTextures[i] = MakeTexture(1, 1, PF_A8R8G8B8, {230, 255, 255, 255});
    if (i > 0) AddTexCoords(*pMesh, i, std::vector<float>(8, 0.5F));
  }
  Draw(*pMesh);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_EQ(pixel.r, 255);
  EXPECT_NEAR(pixel.b, 255.0 * std::pow(230.0 / 255.0, 8.0), 1.0);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
}

TEST_F(QXOgreTexture, RangesWithoutTexturesTakeTheDrawables) {
  QXTexture* const pRed = MakeTexture(1, 1, PF_A8R8G8B8, {0, 0, 255, 255});
  QXTexture* const pGreen = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 0, 255});
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {0.0F, -1.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F},
      {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}});
  AddTexCoords(*pMesh, 0, std::vector<float>(12, 0.5F));
  AddTexturedRange(*pMesh, pRed);
  AddRange<unsigned short>(*pMesh, {1, 4, 5, 1, 5, 2});
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(48, 32), WHITE_PIXEL);
  pOperation->SetTexture(0, pGreen);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), GREEN_PIXEL);
  // It outlives the geometry.
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(Frame().At(48, 32), GREEN_PIXEL);
  pOperation->SetTexture(0, nullptr);
  pOperation->SetTexture(8, pGreen);
  EXPECT_EQ(Frame().At(48, 32), WHITE_PIXEL);
}

TEST_F(QXOgreTexture, APackageWithANameAloneIsLookedUp) {
  QXTexture* const pTexture = m_pTextures->GetTexture(L"wall", 1);
  pTexture->SetTextureData(1, 1, NewBlock({0, 255, 0, 255}), 0, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 0);
  auto const pMesh = MakeTexturedMesh();
  QXTexturePackage* const pPackage = AddTexturedRange(*pMesh, nullptr);
  pPackage->m_strTextureName = L"wall";
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pPackage->m_strTextureName = L"roof";
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(Frame().At(32, 32), WHITE_PIXEL);
  EXPECT_EQ(m_pTextures->GetTexture(L"roof", 0), nullptr) << "looking up makes no texture";
}

TEST_F(QXOgreTexture, WhatLetsThroughIsBlendedIfTheFlagAgrees) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, RED);
  QXTexture* const pTexture = MakeTexture(2, 1, PF_A8R8G8B8, {255, 0, 0, 128, 0, 255, 0, 255});
  DrawTextured(pTexture);
  QXPixel const half = Frame().At(16, 32);
  EXPECT_NEAR(half.r, 127, 1);
  EXPECT_NEAR(half.b, 128, 1);
  EXPECT_EQ(half.a, 255);
  EXPECT_EQ(Frame().At(48, 32), GREEN_PIXEL);
  pTexture->m_bHasTransparentData = 0;
  EXPECT_EQ(Frame().At(16, 32), BLUE_PIXEL) << "opaque, whatever its alpha says";
  // Blended for another reason, it still lets nothing through of its own.
  m_arrOperations.back()->SetOpacity(0.5);
  EXPECT_NEAR(Frame().At(16, 32).r, 127, 1);
  m_arrOperations.back()->SetOpacity(1.0);
  pTexture->m_bHasTransparentData = 1;
  EXPECT_NEAR(Frame().At(16, 32).r, 127, 1);
}

TEST_F(QXOgreTexture, AnOpaqueTextureHidesWhatIsBehindInAnyOrder) {
  // The flag of a texture that nobody looked at says that it may let something through.
  QXTexture* const pGreen = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 0, 255});
  ASSERT_EQ(pGreen->IsHasTransparentData(), 1);
  auto const pFront = MakeTexturedMesh();
  AddTexturedRange(*pFront, pGreen);
  Draw(*pFront);
  // Nearer to the eye by its zero, farther by its face: blending from back to front would draw it last.
  auto const pBehind =
      MakeMesh({{-1.0F, -1.0F, -9.0F}, {1.0F, -1.0F, -9.0F}, {1.0F, 1.0F, -9.0F}, {-1.0F, 1.0F, -9.0F}});
  AddRange<unsigned short>(*pBehind, {0, 1, 2, 0, 2, 3}, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  QXMatrix4d matNearer;
  matNearer.SetTrans({0.0, 0.0, 5.0});
  pBehind->SetMatrix(matNearer);
  Draw(*pBehind);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreTexture, ATextureLoadedLaterIsShownFromThenOn) {
  QXTexture* const pTexture = MakeTexture();
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, RED);
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), WHITE_PIXEL) << "until then its colour alone";
  pTexture->SetTextureData(1, 1, NewBlock({255, 0, 0, 128}), 0, PF_A8R8G8B8);
  EXPECT_EQ(Frame().At(32, 32), WHITE_PIXEL);
  pTexture->SetIsNeedLoadTexture(1);
  EXPECT_NEAR(Frame().At(32, 32).b, 128, 1) << "loaded with the frame, and blended";
  EXPECT_EQ(pTexture->IsNeedLoadTexture(), 0);
  EXPECT_EQ(pTexture->IsLoaded(), 1);
  pTexture->RendererOperation2();
  EXPECT_EQ(pTexture->IsLoaded(), 0);
  EXPECT_EQ(Frame().At(32, 32), WHITE_PIXEL);
  pTexture->LoadTexture(0, 1);
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels, nullptr) << "released after it was loaded";
  EXPECT_NEAR(Frame().At(32, 32).b, 128, 1);
}

TEST_F(QXOgreTexture, OnlyIfNeededLeavesALoadedTextureAlone) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {0, 0, 255, 255});
  DrawTextured(pTexture);
  pTexture->SetTextureData(1, 1, NewBlock({0, 255, 0, 255}), 0, PF_A8R8G8B8);
  pTexture->LoadTexture(1, 0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  pTexture->SetTextureData(1, 1, NewBlock({0, 0, 255, 255}), 0, PF_A8R8G8B8);
  pTexture->SetIsNeedLoadTexture(1);
  pTexture->LoadTexture(1, 0);
  EXPECT_EQ(pTexture->IsNeedLoadTexture(), 0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreTexture, ASubUploadReplacesItsRectangle) {
  QXTexture* const pTexture = MakeTexture(8, 8, PF_A8R8G8B8, Plain(64, {0, 0, 255, 255}));
  DrawTextured(pTexture);
  // The upper left 2 x 3 of a source of 4 x 4: its other pixels are white.
  std::vector<unsigned char> arrSource = Plain(16, {255, 255, 255, 255});
  for (std::size_t y = 0; y < 3; ++y)
    for (std::size_t x = 0; x < 2; ++x)
      for (std::size_t i = 0; i < 4; ++i)
        arrSource[(y * 4 + x) * 4 + i] = i % 2 == 1 ? std::uint8_t{255} : std::uint8_t{0};
  pTexture->LoadSubTexture(2, 1, 2, 3, 4, 4, arrSource.data(), 0);
  QXPicture const picture = Frame();
  for (unsigned int y = 0; y < 8; ++y)
    for (unsigned int x = 0; x < 8; ++x) {
      bool const bInside = x >= 2 && x < 4 && y >= 1 && y < 4;
      EXPECT_EQ(picture.At(8 * x + 4, 8 * y + 4), bInside ? GREEN_PIXEL : RED_PIXEL) << x << ", " << y;
    }
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels[(1 * 8 + 2) * 4 + 2], 255) << "the copy in memory stays";
  pTexture->LoadSubTexture(2, 1, 2, 3, 4, 4, arrSource.data(), 1);
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels[(1 * 8 + 2) * 4 + 2], 0);
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels[(3 * 8 + 3) * 4 + 1], 255);
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels[(4 * 8 + 3) * 4 + 2], 255);
}

TEST_F(QXOgreTexture, ASubUploadKeepsInsideTheTexture) {
  QXTexture* const pTexture = MakeTexture(4, 4, PF_A8R8G8B8, Plain(16, {0, 0, 255, 255}));
  DrawTextured(pTexture);
  // Columns of the source: red, green, blue, white; each row the same.
  std::vector<unsigned char> arrSource;
  for (int y = 0; y < 4; ++y) arrSource.insert(arrSource.end(), FOUR.begin(), FOUR.end());
  pTexture->LoadSubTexture(-1, -2, 4, 4, 4, 4, arrSource.data(), 1);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(8, 8), GREEN_PIXEL);
  EXPECT_EQ(picture.At(24, 8), BLUE_PIXEL);
  EXPECT_EQ(picture.At(40, 8), WHITE_PIXEL);
  EXPECT_EQ(picture.At(56, 8), RED_PIXEL);
  EXPECT_EQ(picture.At(8, 40), RED_PIXEL);
  int const nMax = std::numeric_limits<int>::max();
  int const nMin = std::numeric_limits<int>::min();
  pTexture->LoadSubTexture(3, 3, nMax, nMax, 4, 4, arrSource.data(), 1);
  EXPECT_EQ(Frame().At(56, 56), RED_PIXEL) << "the first pixel of the source, which is red";
  for (int const nFar : {nMax, nMin, 4, -4}) pTexture->LoadSubTexture(nFar, nFar, 4, 4, 4, 4, arrSource.data(), 1);
  pTexture->LoadSubTexture(0, 0, -1, 4, 4, 4, arrSource.data(), 1);
  pTexture->LoadSubTexture(0, 0, 4, 4, 0, 4, arrSource.data(), 1);
  pTexture->LoadSubTexture(0, 0, 4, 4, 4, -7, arrSource.data(), 1);
  pTexture->LoadSubTexture(0, 0, 4, 4, 4, 4, nullptr, 1);
  EXPECT_EQ(Frame().GetBytes(), Frame().GetBytes());
  EXPECT_EQ(Frame().At(8, 8), GREEN_PIXEL);
}

TEST_F(QXOgreTexture, ASubUploadWithoutATextureOnTheDeviceIsNothing) {
  QXTexture* const pTexture = MakeTexture();
  unsigned char const arrPixel[4] = {};
  pTexture->LoadSubTexture(0, 0, 1, 1, 1, 1, arrPixel, 1);
  EXPECT_EQ(pTexture->IsLoaded(), 0);
}

TEST_F(QXOgreTexture, ATileWithHolesMakesAnOpaqueTextureTransparent) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, RED);
  QXTexture* const pTexture = MakeTexture(2, 1, PF_A8R8G8B8, Plain(2, {255, 0, 0, 255}));
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(16, 32), BLUE_PIXEL);
  unsigned char const arrPixel[4] = {};
  pTexture->LoadSubTexture(0, 0, 1, 1, 1, 1, arrPixel, 0);
  EXPECT_EQ(Frame().At(16, 32), RED_PIXEL);
  EXPECT_EQ(Frame().At(48, 32), BLUE_PIXEL);
}

TEST_F(QXOgreTexture, LayersArePickedByTheThirdCoordinate) {
  QXTextureData arrLayers[4];
  std::vector<unsigned char> const arrColors[4] = {
      {255, 255, 255, 255}, {0, 0, 255, 255}, {0, 255, 0, 255}, {255, 0, 0, 255}};
  for (int i = 0; i < 4; ++i) {
    arrLayers[i].m_pPixels = NewBlock(Plain(4, arrColors[i]));
    arrLayers[i].m_nWidth = 2;
    arrLayers[i].m_nHeight = 2;
    arrLayers[i].m_eFormat = PF_A8R8G8B8;
  }
  QXTexture* const pTexture = MakeTexture();
  pTexture->LoadTextureArray(arrLayers, 1, 3);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddTexCoords(*pMesh, 0, {0, 1, 0, 1, 1, 2, 1, 0, 2, 0, 0, 0}, 3);
  AddTexturedRange(*pMesh, pTexture);
  Draw(*pMesh);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(2, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(61, 32), BLUE_PIXEL);
  // A plain image in its place needs another program.
  pTexture->SetTextureData(1, 1, NewBlock({255, 255, 0, 255}), 0, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{0, 255, 255, 255}));
}

TEST_F(QXOgreTexture, LayersOfDifferentSizesAreRefused) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {0, 0, 255, 255});
  for (unsigned int const nEdge : {1U, 2U}) {
    auto* const pLayer = new QXTextureData;
    pLayer->m_pPixels = NewBlock(Plain(std::size_t{nEdge} * nEdge, {0, 255, 0, 255}));
    pLayer->m_nWidth = nEdge;
    pLayer->m_nHeight = nEdge;
    pLayer->m_eFormat = PF_A8R8G8B8;
    pTexture->m_arrLodLevels.Add(pLayer);
  }
  pTexture->LoadTextureArray(0);
  EXPECT_EQ(Reason(), "the layers of a texture must have one size and one format");
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "what was there stays";
  pTexture->LoadTextureArray(nullptr, 0, 1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreTexture, TheDevicesTextureIsReadBack) {
  QXTexture* const pTexture =
      MakeTexture(3, 2, PF_R8G8B8, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18});
  std::unique_ptr<QXImageData> const pImage(pTexture->BlitToMemory());
  ASSERT_NE(pImage, nullptr);
  EXPECT_EQ(pImage->m_nWidth, 3U);
  EXPECT_EQ(pImage->m_nHeight, 2U);
  EXPECT_EQ(pImage->m_nPitch, 12U);
  EXPECT_EQ(pImage->m_nBitDepth, 32);
  auto* const pPixels = static_cast<unsigned char*>(pImage->m_pPixels);
  for (int i = 0; i < 6; ++i)
    for (int k = 0; k < 4; ++k) EXPECT_EQ(pPixels[4 * i + k], k == 3 ? 255 : 3 * i + k + 1) << i << " " << k;
  delete[] pPixels;
  EXPECT_EQ(MakeTexture()->BlitToMemory(), nullptr);
}

TEST_F(QXOgreTexture, SelfContainedOperationsBringTheirTextures) {
  QXTexture* const pYellow = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 255, 255});
  QXTexture* const pCyan = MakeTexture(2, 1, PF_A8R8G8B8, {255, 255, 0, 255, 255, 255, 255, 255});
  QXRenderOperation operation;
  operation.SetVertexNum(6);
  float const arrPlaces[6][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, -1}, {1, 1}, {-1, 1}};
  for (unsigned int i = 0; i < 6; ++i) operation.SetVertexValue(i, arrPlaces[i][0], arrPlaces[i][1], 0.0);
  for (unsigned int const nUnit : {0U, 3U}) {
    operation.m_pTexCoords[nUnit] = new float[12];
    operation.m_nTexVertexNums[nUnit] = 6;
    for (unsigned int i = 0; i < 6; ++i) {
      operation.m_pTexCoords[nUnit][2 * i] = (arrPlaces[i][0] + 1.0F) / 2.0F;
      operation.m_pTexCoords[nUnit][2 * i + 1] = 0.5F;
    }
  }
  operation.m_pTextures[0] = pYellow;
  operation.m_pTextures[3] = pCyan;
  QXRenderOperation3D* const pDrawable = m_pGraphics3D->GetRenderOperationManager()->CreateRenderOperation3D(L"3D", 1);
  m_arrOperations.push_back(pDrawable);
  pDrawable->SetRenderOperation(&operation);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 32), (QXPixel{255, 255, 0, 255}));
}

TEST_F(QXOgreTexture, ThePictureOfATargetIsATexture) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"drawn"), 1);
  QXRenderTarget* const pSource = MakeTarget(L"source", 32, 32);
  AddViewport(*pSource, *MakeCamera(L"other", L"drawn"), 0, 0.0, 0.0, 1.0, 1.0);
  // Green in the upper left quarter.
  auto const pMesh = MakeMesh({{-1.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, GREEN);
  Draw(*pMesh, L"drawn");
  QXTexture* const pTexture = m_pGraphics3D->GetRenderTargetTexture(pSource);
  ASSERT_NE(pTexture, nullptr);
  EXPECT_EQ(pTexture, pSource->GetTexture());
  EXPECT_EQ(pTexture->IsLoaded(), 1);
  pTexture->RendererOperation1(1, 1, 0);
  DrawTextured(pTexture);
  Frame();
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 16), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 16), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(16, 48), BACKGROUND_PIXEL);
  pSource->ReSize(8, 8);
  pSource->SetSceneAntialias(1);
  EXPECT_EQ(m_pGraphics3D->GetRenderTargetTexture(pSource), pTexture);
  Frame();
  EXPECT_EQ(Frame().At(16, 16), GREEN_PIXEL);
  EXPECT_EQ(Frame().At(48, 48), BACKGROUND_PIXEL);
  m_pGraphics3D->DeleteRenderTarget(pSource);
  EXPECT_EQ(Frame().At(48, 48), WHITE_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetRenderTargetTexture(nullptr), nullptr);
  QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(L"window", nullptr, 8, 8, 0);
  ASSERT_NE(pWindow, nullptr);
  m_pGraphics3D->AttachRenderTarget(pWindow);
  EXPECT_EQ(m_pGraphics3D->GetRenderTargetTexture(pWindow), nullptr);
}

TEST_F(QXOgreTexture, FarFromTheOriginTexturesStayOnTheirPixels) {
  QXTexture* const pTexture = MakeTexture(2, 2, PF_A8R8G8B8, FOUR);
  auto const pMesh = MakeTexturedMesh();
  AddTexturedRange(*pMesh, pTexture);
  QXMatrix4d matFar;
  matFar.SetTrans({4.0e6, 5.0e6, 100.0});
  pMesh->SetMatrix(matFar);
  Draw(*pMesh);
  m_pCamera->SetPosition(4.0e6, 5.0e6, 110.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(31, 31), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 31), GREEN_PIXEL);
  EXPECT_EQ(picture.At(31, 32), BLUE_PIXEL);
  EXPECT_EQ(picture.At(32, 32), WHITE_PIXEL);
}

}  // namespace QXC
