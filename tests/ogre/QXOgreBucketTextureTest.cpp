// Textures of passes, and passes folded into one.
#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {

namespace {

using testing::ElementsAre;
using testing::Pair;

std::vector<unsigned char> const RED_TEXEL = {0, 0, 255, 255};
std::vector<unsigned char> const GREEN_TEXEL = {0, 255, 0, 255};
std::vector<unsigned char> const BLUE_TEXEL = {255, 0, 0, 255};
std::vector<unsigned char> const YELLOW_TEXEL = {0, 255, 255, 255};
std::vector<unsigned char> const CYAN_TEXEL = {255, 255, 0, 255};
/// Left red, right green.
std::vector<unsigned char> const TWO_TEXELS = {0, 0, 255, 255, 0, 255, 0, 255};

/// Coordinates of a rectangle's corners from 0 to u and v, the third number 0, the fourth the layer.
std::vector<float> Layer(float fLayer, float fU = 1.0F, float fV = 1.0F) {
  return {0, fV, 0, fLayer, fU, fV, 0, fLayer, fU, 0, 0, fLayer, 0, 0, 0, fLayer};
}
std::vector<float> Flat(float fU = 1.0F, float fV = 1.0F) {
  return {0, fV, fU, fV, fU, 0, 0, 0};
}

class QXOgreBucketTexture : public QXOgreBucketing {
protected:
  /// A rectangle as a mesh of its own, with coordinates of four numbers in units 0 and 1.
  QXStaticMesh& AddMesh(float x0, float x1, wchar_t const* szPass) {
    QXStaticMesh& mesh = *m_arrMeshes.emplace_back(std::make_unique<QXStaticMesh>());
    SetPositions(mesh.m_Vertices, Corners(x0, -1, x1, 1));
    SetTexCoords(mesh.m_Vertices, 0, Layer(7), 4);
    SetTexCoords(mesh.m_Vertices, 1, Layer(7), 4);
    mesh.m_arrIndices.Add(NewIndices(Rectangles(0, 0), szPass));
    return mesh;
  }
  /// Two meshes with a texture each, the left one red.
  void AddRedAndGreen() {
    NameTexture(L"red", RED_TEXEL);
    NameTexture(L"green", GREEN_TEXEL);
    AddPass(m_mapPasses, L"a", {L"green"});
    AddPass(m_mapPasses, L"b", {L"red"});
    AddMesh(-1.0F, 0.0F, L"b");
    AddMesh(0.0F, 1.0F, L"a");
  }
  /// Merges the meshes, with passes folded first, into the one bucket that is returned.
  QXStaticGeometryBucket& Merge(bool bFold = true) {
    for (auto const& pMesh : m_arrMeshes)
      m_Geometry.AddVertexDataAndIndexPackage(
          &pMesh->m_Vertices, pMesh->m_arrIndices, m_mapPasses, pMesh->m_matModel, nullptr, 0);
    if (bFold) m_Geometry.AssginMutiTexture(1, 2);
    m_Geometry.AssignStaticGeometry(QXMatrix4d(), 0);
    return *m_Geometry.m_vecBuckets16.at(0);
  }
  /// Draws a frame; what its left and its right half show in their middle.
  std::pair<QXPixel, QXPixel> Halves() {
    QXPicture const picture = Frame();
    return {picture.At(16, 32), picture.At(48, 32)};
  }
  /// Draws a frame; what its quarters show in their middle, from left to right.
  std::vector<QXPixel> Quarters() {
    QXPicture const picture = Frame();
    return {picture.At(8, 32), picture.At(24, 32), picture.At(40, 32), picture.At(56, 32)};
  }
  void TearDown() override {
    QXOgreBucketing::TearDown();
    for (auto const& [strName, pPass] : m_mapPasses) delete pPass;
  }

  QXStaticGeometry m_Geometry;
  std::map<QdcUnicodeString, QXPass*> m_mapPasses;
  std::vector<std::unique_ptr<QXStaticMesh>> m_arrMeshes;
};

unsigned int g_nNow = 0;

/// Time stands still where a test puts it.
class QXOgreBucketMotion : public QXOgreBucketTexture {
protected:
  void SetUp() override {
    QXOgreBucketTexture::SetUp();
    g_nNow = 0;
    QdcTime::SetClock([] { return g_nNow; });
    NameTexture(L"two", TWO_TEXELS)->SetTextureRepeatMode(1);
  }
  void TearDown() override {
    QdcTime::SetClock(nullptr);
    QXOgreBucketTexture::TearDown();
  }
  /// A pass with an extension whose numbers the tests fill.
  QXMaterialExtension& AddMovingPass(wchar_t const* szName, std::vector<wchar_t const*> const& arrTextures) {
    QXPass* const pPass = AddPass(m_mapPasses, szName, arrTextures);
    pPass->m_pExtension = new QXMaterialExtension;
    return *pPass->m_pExtension;
  }
  static void Fill(float (&fNumbers)[5], std::vector<float> const& arrNumbers) {
    std::copy(arrNumbers.begin(), arrNumbers.end(), fNumbers);
  }
};

/// A folded pass written by hand: eight rectangles side by side, each of a layer of its own.
class QXOgreFoldedPass : public QXOgreBucketing {
protected:
  static constexpr unsigned int COUNT = 8;
  /// The column of pixels in the middle of a rectangle.
  static unsigned int Column(unsigned int nRectangle) { return 8 * nRectangle + 4; }

  void Make(bool bPairs, std::vector<float> const& arrLayers) {
    std::vector<std::vector<float>> arrCorners;
    std::vector<std::vector<float>> arrCoords;
    for (unsigned int i = 0; i < COUNT; ++i) {
      float const x = -1.0F + 0.25F * static_cast<float>(i);
      arrCorners.push_back(Corners(x, -1.0F, x + 0.25F, 1.0F));
      arrCoords.push_back(Layer(arrLayers[i]));
    }
    SetPositions(*m_Bucket.m_pVertexPackage, Join(arrCorners));
    SetTexCoords(*m_Bucket.m_pVertexPackage, 0, Join(arrCoords), 4);
    SetTexCoords(*m_Bucket.m_pVertexPackage, 1, Join(arrCoords), 4);
    m_pPass = AddPass(m_Bucket.m_mapPasses, L"folded");
    m_pPass->m_strVertexProgram = bPairs ? L"MutiRenderModelSecVP.glsl" : L"RenderModelSecVP.glsl";
    m_pPass->m_strFragmentProgram = bPairs ? L"MutiRenderModelSecFP.glsl" : L"RenderModelSecFP.glsl";
    m_pPass->m_bMultiTexture = 1;
    m_Bucket.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, COUNT - 1), L"folded")};
  }
  /// One pixel of a grey for each unit.
  void AddGrey(int nGrey) {
    std::wstring const strName = L"grey" + std::to_wstring(nGrey);
    auto const nByte = static_cast<unsigned char>(nGrey);
    NameTexture(strName.c_str(), {nByte, nByte, nByte, 255});
    m_pPass->CreateTextureUnitState()->SetTextureName(strName.c_str());
  }

  QXStaticGeometryBucket m_Bucket;
  QXPass* m_pPass = nullptr;
};

}  // namespace

TEST_F(QXOgreBucketTexture, TwoFoldedTexturesStandEachOnItsMeshInOneOperation) {
  AddRedAndGreen();
  Show(Merge());
  EXPECT_THAT(Halves(), Pair(RED_PIXEL, GREEN_PIXEL));
  EXPECT_EQ(Operations(), 1U);
}

TEST_F(QXOgreBucketTexture, PairsAreMultipliedEachOnItsMesh) {
  NameTexture(L"yellow", YELLOW_TEXEL);
  NameTexture(L"cyan", CYAN_TEXEL);
  NameTexture(L"red", RED_TEXEL);
  AddPass(m_mapPasses, L"a", {L"yellow", L"cyan"});
  AddPass(m_mapPasses, L"b", {L"yellow", L"red"});
  AddMesh(-1.0F, 0.0F, L"a");
  AddMesh(0.0F, 1.0F, L"b");
  Show(Merge());
  EXPECT_THAT(Halves(), Pair(GREEN_PIXEL, RED_PIXEL));
  EXPECT_EQ(Operations(), 1U);
}

TEST_F(QXOgreBucketTexture, TheSecondOfAPairReadsTheSecondCoordinates) {
  NameTexture(L"yellow", YELLOW_TEXEL);
  NameTexture(L"two", TWO_TEXELS);
  AddPass(m_mapPasses, L"a", {L"yellow", L"two"});
  QXStaticMesh& mesh = AddMesh(-1.0F, 1.0F, L"a");
  // The first set stays in the left half.
  SetTexCoords(mesh.m_Vertices, 0, Layer(0, 0.25F), 4);
  Show(Merge());
  EXPECT_THAT(Halves(), Pair(RED_PIXEL, GREEN_PIXEL));
}

TEST_F(QXOgreBucketTexture, WithoutFoldingEachPassIsAnOperationOfTheSamePicture) {
  AddRedAndGreen();
  Show(Merge(false));
  EXPECT_THAT(Halves(), Pair(RED_PIXEL, GREEN_PIXEL));
  EXPECT_EQ(Operations(), 2U);
}

TEST_F(QXOgreBucketTexture, AllUnitsOfAPassAreMultipliedEachWithItsCoordinates) {
  NameTexture(L"yellow", YELLOW_TEXEL);
  NameTexture(L"two", TWO_TEXELS);
  AddPass(m_mapPasses, L"a", {L"yellow", L"two"});
  QXStaticMesh& mesh = AddMesh(-1.0F, 1.0F, L"a");
  SetTexCoords(mesh.m_Vertices, 0, Flat(0.25F));
  SetTexCoords(mesh.m_Vertices, 1, Flat());
  Show(Merge(false));
  EXPECT_THAT(Halves(), Pair(RED_PIXEL, GREEN_PIXEL));
}

TEST_F(QXOgreBucketTexture, AMissingTextureLeavesTheColoursAsTheyAre) {
  AddPass(m_mapPasses, L"a", {L"nowhere"})->m_clrDiffuse = RED;
  AddMesh(-1.0F, 1.0F, L"a");
  Show(Merge());
  EXPECT_EQ(PixelAt(32, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTexture, TheTransformOfAUnitThatTheMergeAppliedIsNotAppliedAgain) {
  NameTexture(L"two", TWO_TEXELS)->SetTextureRepeatMode(1);
  QXPass* const pPass = AddPass(m_mapPasses, L"a", {L"two"});
  // Half the image to the right: the green half comes first.
  pPass->GetTextureUnitState(0)->m_matUnit.SetTrans({0.5, 0.0, 0.0});
  AddMesh(-1.0F, 1.0F, L"a");
  Show(Merge(false));
  EXPECT_THAT(Halves(), Pair(GREEN_PIXEL, RED_PIXEL));
}

TEST_F(QXOgreBucketTexture, TransformsThatAPassKeepsAreAppliedWhenItIsDrawn) {
  NameTexture(L"two", TWO_TEXELS)->SetTextureRepeatMode(1);
  QXPass* const pPass = AddPass(m_mapPasses, L"a", {L"two"});
  pPass->m_pExtension = new QXMaterialExtension;
  // Something of it moves, though not the unit that is there.
  pPass->m_pExtension->m_fSlides[1][4] = 1.0F;
  pPass->GetTextureUnitState(0)->m_matUnit.SetTrans({0.25, 0.0, 0.0});
  pPass->m_matPass.SetTrans({0.25, 0.0, 0.0});
  AddMesh(-1.0F, 1.0F, L"a");
  Show(Merge(false));
  QXPicture const picture = Frame();
  // One of the two alone would show the other colour at both.
  EXPECT_EQ(picture.At(8, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(40, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketMotion, ATextureSlidesByTheClock) {
  // Half an image a second to the right in coordinates, from a quarter on.
  Fill(AddMovingPass(L"a", {L"two"}).m_fSlides[0], {0.25F, 0.0F, 0.25F, 0.0F, 2.0F});
  AddMesh(-1.0F, 1.0F, L"a");
  Show(Merge(false));
  EXPECT_THAT(Quarters(), ElementsAre(RED_PIXEL, GREEN_PIXEL, GREEN_PIXEL, RED_PIXEL));
  g_nNow = 1000;
  QXPicture const later = Frame();
  EXPECT_EQ(later.At(8, 32), GREEN_PIXEL);
  EXPECT_EQ(later.At(24, 32), RED_PIXEL);
  // Half a month later it is as sharp.
  g_nNow = 1296000500U;
  QXPicture const late = Frame();
  EXPECT_EQ(late.At(1, 32), GREEN_PIXEL);
  EXPECT_EQ(late.At(31, 32), GREEN_PIXEL);
  EXPECT_EQ(late.At(32, 32), RED_PIXEL);
  EXPECT_EQ(late.At(62, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketMotion, ATextureTurnsAboutItsCentreFromUTowardsV) {
  // A quarter turn a second about the middle of the image.
  Fill(AddMovingPass(L"a", {L"two"}).m_fTurns[0], {0.5F, 0.5F, 0.0F, 0.0F, 1.57079633F});
  AddMesh(-1.0F, 1.0F, L"a");
  Show(Merge(false));
  EXPECT_EQ(PixelAt(16, 16), RED_PIXEL);
  EXPECT_EQ(PixelAt(48, 16), GREEN_PIXEL);
  // The red half lies where v was large: below in the picture of coordinates, so its rows begin there.
  g_nNow = 1000;
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 16), picture.At(48, 16));
  EXPECT_EQ(picture.At(16, 48), picture.At(48, 48));
  EXPECT_EQ(picture.At(16, 48), RED_PIXEL);
  EXPECT_EQ(picture.At(16, 16), GREEN_PIXEL);
  g_nNow = 2000;
  EXPECT_EQ(PixelAt(16, 16), GREEN_PIXEL);
  EXPECT_EQ(PixelAt(48, 16), RED_PIXEL);
}

TEST_F(QXOgreBucketMotion, ASizeOfTwoShowsTheImageTwiceAsLarge) {
  Fill(AddMovingPass(L"a", {L"two"}).m_fTurns[0], {0.0F, 0.0F, 2.0F, 0.0F, 1.0e-6F});
  AddMesh(-1.0F, 1.0F, L"a");
  Show(Merge(false));
  EXPECT_EQ(PixelAt(48, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketMotion, OnlyUnitsWithASpeedAndPassesOfTheirTypeMove) {
  QXMaterialExtension& extension = AddMovingPass(L"a", {L"two", L"two"});
  Fill(extension.m_fSlides[0], {0.5F, 0.0F, 0.5F, 0.0F, 0.0F});
  Fill(extension.m_fSlides[1], {0.0F, 0.5F, 0.0F, 0.0F, 1.0F});
  QXPass* const pOther = AddPass(m_mapPasses, L"b", {L"two"});
  pOther->m_pExtension = new QXMaterialExtension(MATERIAL_EXTENSION_NONE);
  Fill(pOther->m_pExtension->m_fSlides[0], {0.5F, 0.0F, 0.5F, 0.0F, 1.0F});
  AddMesh(-1.0F, 0.0F, L"a");
  AddMesh(0.0F, 1.0F, L"b");
  Show(Merge(false));
  g_nNow = 1000;
  EXPECT_THAT(Quarters(), ElementsAre(RED_PIXEL, GREEN_PIXEL, RED_PIXEL, GREEN_PIXEL));
}

TEST_F(QXOgreBucketMotion, OfFoldedPassesTheFirstMovesAndNotThoseBesideIt) {
  Fill(AddMovingPass(L"a", {L"two"}).m_fSlides[0], {0.5F, 0.0F, 0.0F, 0.0F, 1.0F});
  Fill(m_mapPasses[L"a"]->m_pExtension->m_fSlides[1], {0.5F, 0.0F, 0.0F, 0.0F, 1.0F});
  AddPass(m_mapPasses, L"b", {L"two"});
  AddMesh(-1.0F, 0.0F, L"a");
  AddMesh(0.0F, 1.0F, L"b");
  Show(Merge());
  g_nNow = 1000;
  EXPECT_THAT(Quarters(), ElementsAre(GREEN_PIXEL, RED_PIXEL, RED_PIXEL, GREEN_PIXEL));
}

TEST_F(QXOgreBucketTexture, TheWordsOfUnitsClampWhatTheTextureRepeats) {
  NameTexture(L"two", TWO_TEXELS)->SetTextureRepeatMode(1);
  AddPass(m_mapPasses, L"a", {L"two"});
  QXStaticMesh& mesh = AddMesh(-1.0F, 1.0F, L"a");
  SetTexCoords(mesh.m_Vertices, 0, Layer(0, 2.0F, 2.0F), 4);
  QXStaticGeometryBucket const& bucket = Merge(false);
  Show(bucket);
  QXPicture const repeated = Frame();
  EXPECT_EQ(repeated.At(40, 32), RED_PIXEL);
  EXPECT_EQ(repeated.At(56, 32), GREEN_PIXEL);
  m_arrOperations.back()->SetVisible(0);
  bucket.m_mapPasses.at(L"a")->m_nUnitWords[0] = UNIT_WORD_CLAMP_U;
  Show(bucket);
  EXPECT_EQ(PixelAt(40, 32), GREEN_PIXEL);
  m_arrOperations.back()->SetVisible(0);
  bucket.m_mapPasses.at(L"a")->m_nUnitWords[0] = UNIT_WORD_CLAMP_V;
  Show(bucket);
  EXPECT_EQ(PixelAt(40, 32), RED_PIXEL);
}

TEST_F(QXOgreBucketTexture, TheWordForTheSecondAxisClampsThatOne) {
  // One column; the picture holds it twice from bottom to top.
  QXTexture* const pTexture = NameTexture(L"column", TWO_TEXELS);
  pTexture->SetTextureData(1, 2, NewBlock(TWO_TEXELS), 0, PF_A8R8G8B8);
  pTexture->m_TextureData.SetBlockLength(TWO_TEXELS.size());
  pTexture->LoadTexture(0, 0);
  pTexture->SetTextureRepeatMode(1);
  AddPass(m_mapPasses, L"a", {L"column"});
  SetTexCoords(AddMesh(-1.0F, 1.0F, L"a").m_Vertices, 0, Layer(0, 2.0F, 2.0F), 4);
  QXStaticGeometryBucket const& bucket = Merge(false);
  Show(bucket);
  QXPicture const repeated = Frame();
  m_arrOperations.back()->SetVisible(0);
  bucket.m_mapPasses.at(L"a")->m_nUnitWords[0] = UNIT_WORD_CLAMP_V;
  Show(bucket);
  QXPicture const clamped = Frame();
  int nBeyond = 0;
  for (unsigned int nRow : {8U, 24U, 40U, 56U}) nBeyond += repeated.At(32, nRow) == clamped.At(32, nRow) ? 0 : 1;
  EXPECT_EQ(nBeyond, 1) << "of the second copy the half that begins anew";
}

TEST_F(QXOgreBucketTexture, ATextureOfTheDrawableServesThePassesWithoutOne) {
  NameTexture(L"green", GREEN_TEXEL);
  AddPass(m_mapPasses, L"a", {L"green"});
  AddPass(m_mapPasses, L"b");
  AddMesh(-1.0F, 0.0F, L"a");
  AddMesh(0.0F, 1.0F, L"b");
  Show(Merge(false))->SetTexture(0, MakeTexture(1, 1, PF_A8R8G8B8, RED_TEXEL));
  EXPECT_THAT(Halves(), Pair(GREEN_PIXEL, RED_PIXEL));
}

TEST_F(QXOgreBucketTexture, AThirdNumberIsNoPartOfThePlaceInAnImage) {
  NameTexture(L"two", TWO_TEXELS);
  AddPass(m_mapPasses, L"a", {L"two"});
  QXStaticMesh& mesh = AddMesh(-1.0F, 1.0F, L"a");
  SetTexCoords(mesh.m_Vertices, 0, {0, 1, 9, 1, 1, 9, 1, 0, 9, 0, 0, 9}, 3);
  Show(Merge(false));
  EXPECT_THAT(Halves(), Pair(RED_PIXEL, GREEN_PIXEL));
}

TEST_F(QXOgreFoldedPass, EightTexturesStandInTheirLayersAndMoreAreNotRead) {
  Make(false, {0, 1, 2, 3, 4, 5, 6, 8});
  for (int i = 0; i < 10; ++i) AddGrey(10 + 20 * i);
  Show(m_Bucket);
  QXPicture const picture = Frame();
  for (unsigned int i = 0; i < 7; ++i) EXPECT_EQ(picture.At(Column(i), 32).r, static_cast<int>(10 + 20 * i)) << i;
  EXPECT_EQ(picture.At(Column(7), 32), WHITE_PIXEL);
}

TEST_F(QXOgreFoldedPass, LayersWithoutATextureKeepTheirColour) {
  float const fNoNumber = std::numeric_limits<float>::quiet_NaN();
  Make(false, {0, -1, 1, 2.4F, fNoNumber, 1e30F, -1e30F, 0.3F});
  AddGrey(50);
  m_pPass->CreateTextureUnitState()->SetTextureName(L"nowhere");
  AddGrey(90);
  Show(m_Bucket);
  QXPicture const picture = Frame();
  int const nExpected[COUNT] = {50, 255, 255, 90, 255, 255, 255, 50};
  for (unsigned int i = 0; i < COUNT; ++i) EXPECT_EQ(picture.At(Column(i), 32).r, nExpected[i]) << i;
}

TEST_F(QXOgreFoldedPass, PairsBeginAtEvenLayers) {
  Make(true, {0, 2, 4, 6, 1, 3, 8, 0});
  // Pairs multiply to 255, 128, 64 and 32 in the end.
  for (int const n : {255, 255, 255, 128, 128, 128, 128, 64}) AddGrey(n);
  AddGrey(7);
  Show(m_Bucket);
  QXPicture const picture = Frame();
  int const nExpected[COUNT] = {255, 128, 64, 32, 255, 255, 255, 255};
  for (unsigned int i = 0; i < COUNT; ++i) EXPECT_NEAR(picture.At(Column(i), 32).r, nExpected[i], 1) << i;
}

TEST_F(QXOgreFoldedPass, WithoutLayersItIsThePassThatTheOthersWereFoldedInto) {
  Make(false, std::vector<float>(COUNT, 1.0F));
  AddGrey(50);
  AddGrey(90);
  std::vector<float> arrCoords;
  for (unsigned int i = 0; i < COUNT; ++i)
    for (float const f : Flat()) arrCoords.push_back(f);
  SetTexCoords(*m_Bucket.m_pVertexPackage, 0, arrCoords);
  Show(m_Bucket);
  EXPECT_EQ(PixelAt(Column(3), 32).r, 50);
}

TEST_F(QXOgreFoldedPass, WithoutCoordinatesOrTexturesColoursAreShown) {
  Make(true, std::vector<float>(COUNT, 0.0F));
  m_pPass->m_clrDiffuse = RED;
  Show(m_Bucket);
  EXPECT_EQ(PixelAt(Column(3), 32), RED_PIXEL);
  AddGrey(90);
  SetTexCoords(*m_Bucket.m_pVertexPackage, 0, {});
  SetTexCoords(*m_Bucket.m_pVertexPackage, 1, {});
  m_arrOperations.back()->SetVisible(0);
  Show(m_Bucket);
  EXPECT_EQ(PixelAt(Column(3), 32), RED_PIXEL);
}

TEST_F(QXOgreFoldedPass, EachTextureIsClampedByItsOwnWordAndTransformedByItsOwnUnit) {
  Make(false, {0, 0, 0, 0, 1, 1, 1, 1});
  for (wchar_t const* const szName : {L"first", L"second"}) {
    NameTexture(szName, TWO_TEXELS)->SetTextureRepeatMode(1);
    // The places 0 to 1 lie at 1 to 2.
    QXTextureUnitState* const pUnit = m_pPass->CreateTextureUnitState();
    pUnit->SetTextureName(szName);
    pUnit->m_matUnit.SetTrans({1.0, 0.0, 0.0});
  }
  m_pPass->m_nUnitWords[1] = UNIT_WORD_CLAMP_U;
  Show(m_Bucket);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(Column(1) - 2, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(Column(1) + 2, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(Column(5) - 2, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(Column(5) + 2, 32), GREEN_PIXEL);
}

TEST_F(QXOgreFoldedPass, ATextureThatDiesLeavesThePlacesOfTheOthers) {
  Make(false, {0, 1, 2, 0, 1, 2, 0, 1});
  // The picture of a target, which goes with it.
  QXRenderTarget* const pTarget = MakeTarget(L"mirror");
  AddViewport(*pTarget, *MakeCamera(L"second"), 0, 0.0, 0.0, 1.0, 1.0);
  AddGrey(50);
  m_pPass->CreateTextureUnitState()->SetTextureName(L"mirror");
  AddGrey(130);
  // It shows the empty scene, and stays so.
  Frame();
  pTarget->SetActive(0);
  Show(m_Bucket);
  EXPECT_EQ(PixelAt(Column(1), 32), BACKGROUND_PIXEL);
  m_pGraphics3D->DeleteRenderTarget(pTarget);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(Column(0), 32).r, 50);
  EXPECT_EQ(picture.At(Column(1), 32), WHITE_PIXEL);
  EXPECT_EQ(picture.At(Column(2), 32).r, 130);
}

TEST_F(QXOgreFoldedPass, OtherProgramsMultiplyEverything) {
  Make(false, std::vector<float>(COUNT, 1.0F));
  m_pPass->m_strVertexProgram = L"Foreign.glsl";
  AddGrey(128);
  AddGrey(128);
  Show(m_Bucket);
  EXPECT_NEAR(PixelAt(Column(3), 32).r, 64, 1);
}

}  // namespace QXC
